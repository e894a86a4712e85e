#include "ui/answer/picturerow.h"

#include "ui/answer/answergeometry.h"
#include "ui/answer/inlinepicture.h"
#include "ui/style/styles.h"

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

PictureRow::PictureRow(QWidget *parent)
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
}

PictureRow::PictureRow(const QPixmap &pixmap, QWidget *parent)
    : PictureRow(parent)
{
    const QSize box = pictureLabelSize(pixmap.size());
    if (box.isEmpty() && pixmap.isNull()) {
        setPictureSize(box);
        return;
    }
    const QPixmap scaled = pixmap.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    m_label->setPixmap(scaled);
    setPictureSize({box.width(), qMin(scaled.height(), box.height())});
}

PictureRow::PictureRow(const QPixmap &pixmap, const QString &file, QWidget *parent)
    : PictureRow(parent)
{
    setPictureSize(pictureLabelSize(pixmap.size()));
    auto *movie = new QMovie(file, QByteArray(), m_label);
    m_label->setScaledContents(true);
    m_label->setMovie(movie);
    movie->start();
}

void PictureRow::setPictureSize(const QSize &size)
{
    const QRect place(QPoint(0, pictureTopMargin), size);
    m_label->setGeometry(place);
    m_button->setGeometry(place);
    setFixedSize(textMaxWidth, size.height() + pictureTopMargin);
}
