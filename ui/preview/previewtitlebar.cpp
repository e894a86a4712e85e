#include "ui/preview/previewtitlebar.h"

#include "ui/style/styles.h"
#include "ui/text/richtext.h"
#include "ui/text/textwrap.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QResizeEvent>

namespace {

constexpr int barHeight = 56;
constexpr int sideMargin = 24;
constexpr int titleToPictureTitle = 16;
constexpr int buttonSize = 16;
constexpr int betweenButtons = 11;

const QLatin1String barStyle("QWidget#previewTitleBar{background-color:white;border:none;"
                             "border-bottom:1px solid rgb(230,231,235);}"
                             "QPushButton{background-color:transparent;}");
const QLatin1String
    titleStyle("QLabel{background-color:transparent; color:rgb(29,38,51);font:16px Microsoft YaHei;"
               "text-align: left;border:none;}");
const QLatin1String positionStyle(
    "QLabel{background-color:transparent;color:rgb(29,38,51);font:12px Microsoft YaHei;"
    "border:none;}");
const QLatin1String pictureTitleStyle(
    "QLabel{background-color:transparent;color:rgb(143,155,182);font:12px Microsoft YaHei;"
    "border:none;}");

QPushButton *makeButton(QLatin1String image, const QString &name, QWidget *parent)
{
    auto *button = new QPushButton(parent);
    button->setFixedSize(buttonSize, buttonSize);
    button->setStyleSheet(
        styles::threeStateSprite(image, buttonSize)
        + QStringLiteral("QPushButton:focus{%1}").arg(styles::spriteRow(image, 1, 3, buttonSize)));
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(name);
    button->setToolTip(name);
    return button;
}

} // namespace

PreviewTitleBar::PreviewTitleBar(QWidget *parent)
    : QWidget(parent)
    , m_position(new QLabel(this))
    , m_pictureTitle(new QLabel(this))
    , m_minimise(makeButton(QLatin1String("btn-min.png"), tr("最小化"), this))
    , m_maximise(makeButton(QLatin1String("btn-max.png"), tr("最大化"), this))
    , m_close(makeButton(QLatin1String("btn-close.png"), tr("关闭"), this))
{
    setObjectName(QStringLiteral("previewTitleBar"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(barStyle);
    setFixedHeight(barHeight);
    auto *title = new QLabel(tr("图片预览"), this);
    title->setObjectName(QStringLiteral("previewTitle"));
    title->setStyleSheet(titleStyle);
    title->lower(); // a screen reader reads it first, as it stands first
    m_position->setObjectName(QStringLiteral("picturePosition"));
    m_position->setStyleSheet(positionStyle);
    m_position->hide();
    m_pictureTitle->setObjectName(QStringLiteral("pictureTitle"));
    m_pictureTitle->setStyleSheet(pictureTitleStyle);
    m_pictureTitle->setTextFormat(Qt::PlainText);
    m_pictureTitle->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(sideMargin, 0, sideMargin, 0);
    layout->setSpacing(betweenButtons);
    layout->addWidget(title);
    layout->addWidget(m_position);
    layout->addSpacing(titleToPictureTitle - betweenButtons);
    layout->addWidget(m_pictureTitle, 1);
    layout->addSpacing(sideMargin);
    layout->addWidget(m_minimise);
    layout->addWidget(m_maximise);
    layout->addWidget(m_close);
    // The window's border and its title are taken through the bar.
    for (QWidget *surface :
         std::initializer_list<QWidget *>{this, title, m_position, m_pictureTitle}) {
        surface->setMouseTracking(true);
    }
}

void PreviewTitleBar::setPictureTitle(const QString &title)
{
    m_fullPictureTitle = readableText(shownPart(title)).simplified();
    cutPictureTitle();
}

void PreviewTitleBar::setPosition(int number, int count)
{
    const bool known = number >= 0 && number < count;
    m_position->setText(known ? QStringLiteral("%1 / %2").arg(number + 1).arg(count) : QString());
    m_position->setVisible(known);
    cutPictureTitle();
}

void PreviewTitleBar::setMaximised(bool maximised)
{
    const QString name = maximised ? tr("还原") : tr("最大化");
    m_maximise->setAccessibleName(name);
    m_maximise->setToolTip(name);
}

void PreviewTitleBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    cutPictureTitle();
}

void PreviewTitleBar::cutPictureTitle()
{
    m_pictureTitle->ensurePolished();
    layout()->activate();
    m_pictureTitle->setText(m_pictureTitle->fontMetrics().elidedText(
        m_fullPictureTitle, Qt::ElideRight, m_pictureTitle->width()));
}
