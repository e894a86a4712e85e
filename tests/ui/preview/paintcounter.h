#pragma once

#include <QEvent>
#include <QObject>

/// Counts how often a widget is painted.
class PaintCounter : public QObject
{
    Q_DISABLE_COPY(PaintCounter)

public:
    explicit PaintCounter(QObject *watched) { watched->installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};
