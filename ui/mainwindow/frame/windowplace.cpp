#include "ui/mainwindow/frame/windowplace.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

QVector<QRect> screenPlaces()
{
    QVector<QRect> places;
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        places.append(screen->geometry());
    }
    return places;
}

QSize sizeOfScreenAtOrigin(const QVector<QRect> &screens)
{
    for (const QRect &screen : screens) {
        if (screen.topLeft() == QPoint(0, 0)) {
            return screen.size();
        }
    }
    return {0, 0};
}

QPoint centredPosition(const QSize &area, const QSize &size)
{
    return {(area.width() - size.width()) / 2, (area.height() - size.height()) / 2};
}

void placeAnew(QWidget &window, const QPoint &place)
{
    window.move(place);
    window.update();
    showAnew(window);
}

void showAnew(QWidget &window)
{
    if (window.isVisible()) {
        window.hide();
        window.show();
    }
}
