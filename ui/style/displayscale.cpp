#include "ui/style/displayscale.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

void followDisplayScale()
{
#ifdef Q_OS_WIN
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
#endif
}

qreal fittingScale(qreal scale, const QSize &available, const QSize &window)
{
    const auto side = [](int place, int length) {
        return static_cast<qreal>(place) / length;
    };
    const qreal room = std::min(side(available.width(), window.width()),
                                side(available.height(), window.height()));
    return std::min(scale, std::max(room, qreal(1)));
}

bool anyScreenIsScaled()
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    return std::any_of(screens.cbegin(), screens.cend(),
                       [](const QScreen *screen) { return screen->devicePixelRatio() > 1; });
}
