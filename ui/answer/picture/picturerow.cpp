#include "ui/answer/picture/picturerow.h"

#include "ui/answer/picture/inlinepicture.h"
#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"

#include <QLabel>
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

void PictureRow::setPicture(const QString &part, const QPixmap &pixmap, const QString &gifPath)
{
    if (isAnimatedPicture(part)) {
        if (pixmap.isNull()) {
            return; // no picture, or one too large to be decoded
        }
        auto *movie = new QMovie(gifPath, QByteArray(), m_label);
        m_label->setScaledContents(true);
        m_label->setMovie(movie);
        movie->start();
        return;
    }
    m_lastPictureHeight = 0;
    if (!pixmap.isNull()) {
        const QPixmap scaled
            = pixmap.scaled(m_label->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
        m_lastPictureHeight = qMin(scaled.height(), m_label->height());
        m_label->setPixmap(scaled);
    }
}

void PictureRow::fitPictureRow(const QString &part)
{
    if (!isAnimatedPicture(part)) {
        setPictureSize({m_label->width(), m_lastPictureHeight});
    }
}

void PictureRow::setPictureSize(const QSize &size)
{
    m_lastPictureHeight = size.height();
    const QRect place(QPoint(0, pictureTopMargin), size);
    m_label->setGeometry(place);
    m_button->setGeometry(place);
    setFixedSize(textMaxWidth, size.height() + pictureTopMargin);
}
