#include "ui/preview/picturearea.h"

#include "ui/preview/picturelabel.h"
#include "ui/preview/picturezoom.h"

#include <QMovie>
#include <QResizeEvent>
#include <QScreen>

namespace {

QSize scaledBy(const QSize &size, qreal scale)
{
    return {qRound(qMin(size.width() * scale, qreal(longestSide))),
            qRound(qMin(size.height() * scale, qreal(longestSide)))};
}

} // namespace

PictureArea::PictureArea(QWidget *parent)
    : QWidget(parent)
    , m_label(new PictureLabel(this))
{
    setObjectName(QStringLiteral("pictureArea"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("background-color:transparent;border:none;"));
    m_label->setObjectName(QStringLiteral("pictureLabel"));
    m_label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    setMouseTracking(true);
    m_label->setMouseTracking(true);
    // Not inside the painting.
    connect(m_label, &PictureLabel::screenDiffers, this, &PictureArea::makeForScreen,
            Qt::QueuedConnection);
}

QLabel *PictureArea::label() const
{
    return m_label;
}

void PictureArea::setPictureSize(const QSize &size)
{
    if (!m_pictureSize.isEmpty()) {
        const auto scaled = [](int pan, int side, int before) {
            return qRound(static_cast<double>(pan) * side / before);
        };
        m_pan = {scaled(m_pan.x(), size.width(), m_pictureSize.width()),
                 scaled(m_pan.y(), size.height(), m_pictureSize.height())};
    }
    m_pictureSize = size;
    m_pan = allowed(m_pan);
}

void PictureArea::showPicture(const QPixmap &original, const QSize &size)
{
    closeMovie();
    m_original = original;
    setPictureSize(size);
    makePart();
    placeLabel();
}

/// Gives the label the picture, or, when it is too large to be made, the part around the middle of
/// the area.
void PictureArea::makePart()
{
    const qreal scale = devicePixelRatioF(); // the part is made of the screen's own pixels
    const QSize visible = screen()->size().expandedTo(size());
    const QSize full = scaledBy(m_pictureSize, scale);
    const QRect part = partToMake(full, scaledBy(visible, scale), m_pan * scale);
    QPixmap made
        = scale > 1 ? smoothPart(m_original, full, part) : scaledPart(m_original, full, part);
    made.setDevicePixelRatio(scale);
    m_label->setPixmap(made);
    m_partPlace = part.topLeft() / scale;
}

/// The window has come to a screen of another scale.
void PictureArea::makeForScreen()
{
    if (!m_original.isNull()) {
        makePart();
        placeLabel();
    }
}

bool PictureArea::playMovie(const QString &file)
{
    closeMovie(); // before the new one: it holds its file open
    m_original = {};
    auto *movie = new QMovie(file, QByteArray(), m_label);
    if (!movie->isValid()) {
        delete movie;
        m_label->clear();
        return false;
    }
    m_movie = movie;
    m_label->setMovie(movie);
    movie->start();
    m_partPlace = {};
    setPictureSize(movie->currentPixmap().size());
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
    m_pan = allowed(m_pan);
    if (showsPart()) {
        makePart(); // a larger one, perhaps
    }
    placeLabel();
}

void PictureArea::placeLabel()
{
    const QPixmap shown = m_label->shownPicture();
    if (!m_label->hasScaledContents() || shown.isNull()) {
        m_label->setGeometry(rect());
        placePicture();
        return;
    }
    // QLabel stretches a picture to its own size, so the label takes the picture's proportions.
    QRect place(QPoint(),
                m_label->shownSize().scaled(size(), Qt::KeepAspectRatio).expandedTo({1, 1}));
    place.moveCenter(rect().center());
    m_label->setGeometry(place);
}

/// Puts the part that is shown where it lies in the picture, and the picture where it was moved.
void PictureArea::placePicture()
{
    m_pan = allowed(m_pan);
    const auto offset = [](int pan, int place, int part, int full) {
        return pan + place + part / 2 - full / 2;
    };
    const QSize part = m_label->shownSize();
    m_label->setOffset({offset(m_pan.x(), m_partPlace.x(), part.width(), m_pictureSize.width()),
                        offset(m_pan.y(), m_partPlace.y(), part.height(), m_pictureSize.height())});
}

QSize PictureArea::range() const
{
    const bool cut = !m_label->hasScaledContents() && !m_label->shownPicture().isNull();
    return cut ? panRange(m_pictureSize, size()) : QSize(0, 0);
}

QPoint PictureArea::allowed(const QPoint &pan) const
{
    const QSize far = range();
    return {qBound(-far.width(), pan.x(), far.width()),
            qBound(-far.height(), pan.y(), far.height())};
}

void PictureArea::resetPan()
{
    m_pan = {};
    placePicture();
}

bool PictureArea::showsPart() const
{
    return !m_original.isNull() && m_label->shownSize() != m_pictureSize;
}

bool PictureArea::canPan() const
{
    return range() != QSize(0, 0);
}

void PictureArea::startPan(const QPoint &cursor)
{
    if (canPan()) {
        m_panCursor = cursor;
    }
}

void PictureArea::panTo(const QPoint &cursor)
{
    if (!m_panCursor) {
        return;
    }
    const QPoint before = m_pan;
    m_pan = allowed(m_pan + cursor - *m_panCursor);
    m_panCursor = cursor;
    if (m_pan == before) {
        return;
    }
    if (showsPart()) {
        makePart(); // another one
    }
    placePicture();
}
