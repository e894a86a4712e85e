#include "service/request/deadlinewait.h"

#include <QtGlobal>

namespace {

constexpr int longWaitMs = 2000;

} // namespace

DeadlineWait::DeadlineWait(int timeoutMs)
    : m_timeoutMs(qMax(0, timeoutMs))
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { expire(); });
}

DeadlineWait::~DeadlineWait()
{
    QObject::disconnect(m_ending);
}

DeadlineWait::End DeadlineWait::exec()
{
    if (!m_ended) {
        m_deadline.setRemainingTime(m_timeoutMs, Qt::PreciseTimer);
        startTimer(m_timeoutMs);
        m_loop.exec();
        m_timer.stop();
    }
    QObject::disconnect(m_ending);
    if (m_expired) {
        return End::TooLate;
    }
    return m_ended ? End::InTime : End::GivenUp;
}

void DeadlineWait::startTimer(qint64 leftMs)
{
    // A precise timer makes Windows run its clock at 1 ms, which costs power, so only the last
    // moments have one. A coarse one is a twentieth early or late, so it gets nine tenths of what
    // is left.
    const bool isLong = leftMs >= longWaitMs;
    m_timer.setTimerType(isLong ? Qt::CoarseTimer : Qt::PreciseTimer);
    m_timer.start(static_cast<int>(isLong ? leftMs - leftMs / 10 : leftMs));
}

void DeadlineWait::end()
{
    m_ended = true;
    m_timer.stop();
    m_loop.quit();
}

void DeadlineWait::expire()
{
    // The system's timers may fire a moment before their time.
    const qint64 left = m_deadline.remainingTime();
    if (left > 0) {
        startTimer(left);
        return;
    }
    m_expired = true;
    m_loop.quit();
}
