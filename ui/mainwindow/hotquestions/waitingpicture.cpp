#include "ui/mainwindow/hotquestions/waitingpicture.h"

#include "ui/style/movierest.h"

#include <QMovie>
#include <QTimer>

namespace {

constexpr int frameMs = 70; ///< of the animation

} // namespace

WaitingPicture::WaitingPicture(QWidget *parent)
    : ScaledPicture(parent)
    , m_movie(new QMovie(devicePixelRatioF() > 1 ? QStringLiteral(":/Images/waiting@2x.gif")
                                                 : QStringLiteral(":/Images/waiting.gif"),
                         QByteArray(), this))
{
    setPicture(QStringLiteral("waiting-first.png"));
    new MovieRest(m_movie, this); // which the movie owns
}

void WaitingPicture::paintEvent(QPaintEvent *event)
{
    ScaledPicture::paintEvent(event);
    if (!m_wasPainted) {
        m_wasPainted = true;
        QTimer::singleShot(frameMs, this, &WaitingPicture::startMoving);
    }
}

void WaitingPicture::startMoving()
{
    setMovie(m_movie);
    m_movie->start();
}
