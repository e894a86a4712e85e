#include "ui/mainwindow/frame/screenwatch.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QScreen>

ScreenWatch::ScreenWatch(QObject *parent)
    : QObject(parent)
{
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &ScreenWatch::screensChanged);
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED // no other class of Qt tells of every screen at once
        const QDesktopWidget *desktop
        = QApplication::desktop();
    connect(desktop, &QDesktopWidget::resized, this, &ScreenWatch::screensChanged);
    connect(desktop, &QDesktopWidget::screenCountChanged, this, &ScreenWatch::screensChanged);
    QT_WARNING_POP
    if (const QScreen *primary = QGuiApplication::primaryScreen()) {
        connect(primary, &QScreen::logicalDotsPerInchChanged, this,
                &ScreenWatch::logicalDotsPerInchChanged);
    }
}
