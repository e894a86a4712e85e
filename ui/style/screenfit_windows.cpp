#include "ui/style/displayscale.h"
#include "ui/style/screenfit.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>

// Qt has no other way to give one screen another scale while the program runs.
#include <qpa/qplatformscreen.h>

#include <private/qhighdpiscaling_p.h>

namespace {

/// Qt takes no notice of a factor of 1. Nothing is longer by a pixel for this one.
constexpr qreal leastFactor = 1.000001;

} // namespace

ScreenFit::ScreenFit(const QSize &window)
    : m_window(window)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (QScreen *screen : screens) {
        watch(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &ScreenFit::watch);
}

void ScreenFit::watch(QScreen *screen)
{
    const auto fitAgain = [this, screen] {
        fit(screen);
    };
    connect(screen, &QScreen::geometryChanged, this, fitAgain);
    connect(screen, &QScreen::availableGeometryChanged, this, fitAgain);
    connect(screen, &QScreen::logicalDotsPerInchChanged, this, fitAgain);
    fit(screen);
}

void ScreenFit::fit(QScreen *screen)
{
    const QPlatformScreen *native = screen->handle();
    const qreal scale = native->logicalDpi().first / native->logicalBaseDpi().first;
    const qreal fitting = fittingScale(scale, native->availableGeometry().size(), m_window);
    if (qFuzzyCompare(fitting, m_scales.value(screen->name(), scale))) {
        return;
    }
    m_scales.insert(screen->name(), fitting); // from now on Qt's own scale of it counts no more
    QHighDpiScaling::setScreenFactor(screen, std::max(fitting, leastFactor));
    resizeWindowsOn(screen);
}

/// Their sizes stay as they are, in device-independent px; Qt has not told the system yet.
void ScreenFit::resizeWindowsOn(const QScreen *screen)
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *window : windows) {
        const QWidget *widget = QWidget::find(window->winId());
        if (window->screen() == screen && widget != nullptr && !widget->isMaximized()) {
            window->resize(widget->size());
        }
    }
}
