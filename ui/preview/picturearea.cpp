#include "ui/preview/picturearea.h"

#include "ui/style/styles.h"

#include <QLabel>
#include <QMovie>
#include <QResizeEvent>

PictureArea::PictureArea(QWidget *parent)
    : QWidget(parent)
    , m_label(new QLabel(this))
{
    setObjectName(QStringLiteral("pictureArea"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("background-color:transparent;border:none;"));
    m_label->setObjectName(QStringLiteral("pictureLabel"));
    m_label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    setMouseTracking(true);
    m_label->setMouseTracking(true);
}

void PictureArea::showPicture(const QPixmap &picture)
{
    // QLabel::setPixmap() asks for a repaint, even for the same picture: that would never end.
    if (m_movie.isNull() && m_label->pixmap(Qt::ReturnByValue).cacheKey() == picture.cacheKey()) {
        return;
    }
    closeMovie();
    m_label->setPixmap(picture);
    placeLabel();
}

bool PictureArea::playMovie(const QString &file)
{
    closeMovie(); // before the new one: it holds its file open
    auto *movie = new QMovie(file, QByteArray(), m_label);
    if (!movie->isValid()) {
        delete movie;
        m_label->clear();
        return false;
    }
    m_movie = movie;
    m_label->setMovie(movie);
    movie->start();
    placeLabel();
    return true;
}

void PictureArea::closeMovie()
{
    if (!m_movie.isNull()) {
        m_label->clear();
        delete m_movie;
    }
}

void PictureArea::setScaled(bool scaled)
{
    m_label->setScaledContents(scaled);
    placeLabel();
}

void PictureArea::setMoviePaused(bool paused)
{
    if (!m_movie.isNull() && m_movie->state() != QMovie::NotRunning) {
        m_movie->setPaused(paused);
    }
}

void PictureArea::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeLabel();
}

void PictureArea::placeLabel()
{
    const QPixmap shown
        = m_movie.isNull() ? m_label->pixmap(Qt::ReturnByValue) : m_movie->currentPixmap();
    if (!m_label->hasScaledContents() || shown.isNull()) {
        m_label->setGeometry(rect());
        return;
    }
    // QLabel stretches a picture to its own size, so the label takes the picture's proportions.
    QRect place(QPoint(), shown.size().scaled(size(), Qt::KeepAspectRatio).expandedTo({1, 1}));
    place.moveCenter(rect().center());
    m_label->setGeometry(place);
}
