#include "ui/answer/picture/picturerow.h"

#include "ui/answer/picture/inlinepicture.h"
#include "ui/style/movierest.h"
#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"

#include <QLabel>
#include <QListWidgetItem>
#include <QMovie>
#include <QPushButton>

namespace {

constexpr int pictureTopMargin = 4;

QString pictureStyle()
{
    return QStringLiteral("QPushButton{background-color: transparent;border:none;}");
}

} // namespace

PictureRow::PictureRow(const QSize &size, QWidget *parent)
    : QWidget(parent)
    , m_label(new QLabel(this))
    , m_button(new QPushButton(this))
{
    setContentsMargins(0, 0, 0, 0);
    setStyleSheet(styles::transparentItem);
    m_label->setStyleSheet(pictureStyle());
    m_button->setStyleSheet(pictureStyle());
    m_button->setFlat(true);
    m_button->setCursor(Qt::PointingHandCursor);
    m_button->setContextMenuPolicy(Qt::CustomContextMenu);
    m_button->setAccessibleName(tr("查看图片"));
    m_button->setToolTip(m_button->accessibleName());
    setPictureSize(pictureLabelSize(size));
}

void PictureRow::showPicture(const QString &part, const QPixmap &pixmap, const QString &gifPath)
{
    if (isAnimatedPicture(part)) {
        if (pixmap.isNull()) {
            return; // no picture, or one too large to be decoded
        }
        auto *movie = new QMovie(gifPath, QByteArray(), m_label);
        m_label->setScaledContents(true);
        m_label->setMovie(movie);
        new MovieRest(movie, m_label); // which the movie owns
        movie->start();
        return;
    }
    lastPictureHeight = 0;
    if (!pixmap.isNull()) {
        const QPixmap scaled
            = pixmap.scaled(m_label->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
        lastPictureHeight = qMin(scaled.height(), m_label->height());
        m_label->setPixmap(scaled);
    }
}

void PictureRow::fitToPicture(const QString &part, int width)
{
    if (!isAnimatedPicture(part)) {
        setPictureSize({width, lastPictureHeight});
    }
}

void PictureRow::joinListAs(QListWidgetItem *item)
{
    m_item = item;
    m_item->setSizeHint(size());
}

void PictureRow::setPictureSize(const QSize &size)
{
    lastPictureHeight = size.height();
    const QRect place(QPoint(0, pictureTopMargin), size);
    m_label->setGeometry(place);
    m_button->setGeometry(place);
    setFixedSize(textMaxWidth, size.height() + pictureTopMargin);
    if (m_item != nullptr) {
        m_item->setSizeHint(this->size());
    }
}
