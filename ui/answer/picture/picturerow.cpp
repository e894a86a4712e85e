#include "ui/answer/picture/picturerow.h"

#include "ui/answer/picture/animationplay.h"
#include "ui/answer/picture/inlinepicture.h"
#include "ui/answer/picture/picturedecoder.h"
#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"

#include <QLabel>
#include <QListWidgetItem>
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
        if (!play(gifPath, pixmap.size())) {
            m_label->setPixmap(
                pixmap.scaled(m_label->size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        }
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

void PictureRow::showLater(const QString &part, const QByteArray &bytes, const QSize &size,
                           const QString &gifPath)
{
    const QSize shown = size.scaled(m_label->size(), Qt::KeepAspectRatio).expandedTo({1, 1});
    if (!isAnimatedPicture(part)) {
        lastPictureHeight = qMin(shown.height(), m_label->height());
    } else if (play(gifPath, size)) {
        return;
    }
    PictureDecoder *decoder = PictureDecoder::instance();
    connect(decoder, &PictureDecoder::decoded, this, &PictureRow::takeDecoded);
    m_awaited = decoder->decodeLater(bytes, shown);
}

void PictureRow::takeDecoded(int number, const QImage &image)
{
    if (number == m_awaited) {
        disconnect(PictureDecoder::instance(), nullptr, this, nullptr);
        m_label->setPixmap(QPixmap::fromImage(image));
    }
}

bool PictureRow::play(const QString &file, const QSize &canvas)
{
    auto *animation = new AnimationPlay(m_label, file, canvas);
    return animation->start();
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
