#pragma once

#include <QGuiApplication>
#include <QScreen>

/// The scale of the screens of a test program, as the system's settings would have it. GUI thread.
namespace screenscale {

/// Lets scales be set later; to be called before there is an application object.
inline void allow()
{
    qputenv("QT_SCREEN_SCALE_FACTORS", "2"); // Qt looks at scales of screens only if one is not 1
}

/// Gives \a screen the scale \a ratio from now on. Qt has no public operation for that: this is the
/// property in which it keeps the scale.
inline void set(QScreen *screen, qreal ratio)
{
    screen->setProperty("_q_scaleFactor", ratio);
}

/// The same for the first screen.
inline void set(qreal ratio)
{
    set(QGuiApplication::primaryScreen(), ratio);
}

} // namespace screenscale
