#include "ui/mainwindow/hotquestions/waitingpicture.h"

#include "ui/style/movierest.h"

#include <QMovie>
#include <QTimer>

namespace {

constexpr int frameMs = 70; ///< of the animation

} // namespace

WaitingPicture::WaitingPicture(QWidget *parent)
    : QLabel(parent)
    , m_movie(new QMovie(QStringLiteral(":/Images/waiting.gif"), QByteArray(), this))
{
    setPixmap(QPixmap(QStringLiteral(":/Images/waiting-first.png")));
    new MovieRest(m_movie, this); // which the movie owns
}

void WaitingPicture::paintEvent(QPaintEvent *event)
{
    QLabel::paintEvent(event);
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
