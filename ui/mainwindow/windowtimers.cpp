#include "ui/mainwindow/windowtimers.h"

namespace {

constexpr int associationTickMs = 1000;
constexpr int loginPollMs = 60000;
constexpr int processWatchMs = 60000;
constexpr int hotRefreshMs = 1800000;

void setUp(QTimer &timer, const QString &name, int intervalMs)
{
    timer.setObjectName(name);
    timer.setInterval(intervalMs);
}

} // namespace

WindowTimers::WindowTimers(QObject *window)
    : associationTick(window)
    , loginPoll(window)
    , processWatch(window)
    , hotRefresh(window)
{
    setUp(associationTick, QStringLiteral("associationTick"), associationTickMs);
    setUp(loginPoll, QStringLiteral("loginPoll"), loginPollMs);
    setUp(processWatch, QStringLiteral("processWatch"), processWatchMs);
    setUp(hotRefresh, QStringLiteral("hotRefresh"), hotRefreshMs);
}
