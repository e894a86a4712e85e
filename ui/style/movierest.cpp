#include "ui/style/movierest.h"

#include <QEvent>
#include <QMovie>
#include <QWidget>

MovieRest::MovieRest(QMovie *movie, QWidget *label)
    : QObject(movie)
    , m_movie(movie)
{
    label->installEventFilter(this);
    connect(movie, &QMovie::frameChanged, this, &MovieRest::frameCame);
}

bool MovieRest::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Hide: // a minimised window may still be painted
        m_hidden = true;
        rest();
        break;
    case QEvent::Show:
        m_hidden = false;
        goOn();
        break;
    case QEvent::Paint:
        goOn();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void MovieRest::frameCame()
{
    if (!m_painted) {
        rest();
    }
    m_painted = false;
}

void MovieRest::rest()
{
    if (m_movie->state() == QMovie::Running) {
        m_resting = true;
        m_movie->setPaused(true);
    }
}

void MovieRest::goOn()
{
    m_painted = true;
    if (m_resting && !m_hidden) {
        m_resting = false;
        m_movie->setPaused(false);
    }
}
