#include "ui/answer/picture/picturerow.h"

#include "ui/answer/picture/animationplay.h"
#include "ui/answer/picture/inlinepicture.h"
#include "ui/preview/picturelabel.h"
#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"

#include <QEvent>
#include <QListWidgetItem>
#include <QPushButton>

namespace {

constexpr int pictureTopMargin = 4;

QString pictureStyle()
{
    return QStringLiteral("QPushButton{background-color: transparent;border:none;}");
}

} // namespace

PictureRow::PictureRow(QWidget *parent)
    : QWidget(parent)
    , m_label(new PictureLabel(this))
    , m_button(new QPushButton(this))
{
    setContentsMargins(0, 0, 0, 0);
    setStyleSheet(styles::transparentItem);
    m_label->setStyleSheet(pictureStyle());
    m_label->installEventFilter(this);
    connect(m_label, &PictureLabel::screenDiffers, this, &PictureRow::pictureWanted);
    m_button->setStyleSheet(pictureStyle());
    m_button->setFlat(true);
    m_button->setCursor(Qt::PointingHandCursor);
    m_button->setContextMenuPolicy(Qt::CustomContextMenu);
    m_button->setAccessibleName(tr("查看图片"));
    m_button->setToolTip(m_button->accessibleName());
    setPictureSize({0, 0});
}

QLabel *PictureRow::label() const
{
    return m_label;
}

void PictureRow::setPlace(const QSize &size, bool isAnimated)
{
    const QSize label = pictureLabelSize(size);
    const int height = shownPictureSize(size, isAnimated).height();
    setPictureSize({label.width(), qMin(height, label.height())});
}

void PictureRow::showStill(const QPixmap &picture)
{
    m_label->setPixmap(picture);
    lastPictureHeight = qMin(m_label->shownSize().height(), m_label->height());
}

bool PictureRow::play(const QString &file, const QSize &canvas)
{
    if (m_animation == nullptr) {
        m_animation = new AnimationPlay(m_label, file, canvas);
    }
    return m_animation->start();
}

bool PictureRow::isPlaying() const
{
    return m_label->movie() != nullptr;
}

bool PictureRow::isSeen() const
{
    return !m_label->visibleRegion().isEmpty();
}

void PictureRow::dropPicture()
{
    if (!isPlaying()) {
        m_label->clear();
    }
}

void PictureRow::fitToPicture(int width)
{
    setPictureSize({width, lastPictureHeight});
}

void PictureRow::joinListAs(QListWidgetItem *item)
{
    m_item = item;
    m_item->setSizeHint(size());
}

void PictureRow::setPictureSize(const QSize &size)
{
    const int before = height();
    lastPictureHeight = size.height();
    const QRect place(QPoint(0, pictureTopMargin), size);
    m_label->setGeometry(place);
    m_button->setGeometry(place);
    setFixedSize(textMaxWidth, size.height() + pictureTopMargin);
    if (m_item != nullptr) {
        m_item->setSizeHint(this->size());
        if (height() != before) {
            emit heightChanged();
        }
    }
}

bool PictureRow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && !isPlaying()
        && m_label->pixmap(Qt::ReturnByValue).isNull()) {
        emit pictureWanted();
    }
    return QWidget::eventFilter(watched, event);
}
