#include "ui/preview/previewtoolbar.h"

#include "ui/style/styles.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace {

constexpr int barHeight = 68;
constexpr int toolSize = 28;
constexpr int pageSize = 60;
constexpr int betweenTools = 20;
constexpr int betweenPages = 24;
constexpr int toolsToPages = 32;
constexpr int rowsOfStrip = 4;

const QLatin1String barStyle("QWidget#previewToolBar{background-color:white;border:none;"
                             "border-top:1px solid rgb(230,231,235);}"
                             "QPushButton{border:none;}");

/// Tool button \a number, counted from 0, in the order of the sprites.
QLatin1String toolImage(std::size_t number)
{
    static const std::array<QLatin1String, 4> images{
        QLatin1String("btn-preview-1.png"), QLatin1String("btn-preview-2.png"),
        QLatin1String("btn-preview-3.png"), QLatin1String("btn-preview-4.png")};
    return images.at(number);
}

QString rowsAfterTheFirst(QLatin1String image, int size)
{
    return QStringLiteral("QPushButton:focus{%1}QPushButton:hover{%1}QPushButton:pressed{%2}"
                          "QPushButton:checked{%3}")
        .arg(styles::spriteRow(image, 1, rowsOfStrip, size),
             styles::spriteRow(image, 2, rowsOfStrip, size),
             styles::spriteRow(image, 3, rowsOfStrip, size));
}

QString enabledStyle(QLatin1String image)
{
    return QStringLiteral("QPushButton{background-color:transparent;%1}")
               .arg(styles::spriteRow(image, 0, rowsOfStrip, toolSize))
         + rowsAfterTheFirst(image, toolSize);
}

QString disabledStyle(QLatin1String image)
{
    return QStringLiteral("QPushButton{background-color:transparent;%1}")
        .arg(styles::spriteRow(image, rowsOfStrip - 1, rowsOfStrip, toolSize));
}

/// Nothing is painted until the button is hovered over.
QString pageStyle(QLatin1String image)
{
    return QStringLiteral("QPushButton{background-color:transparent;}")
         + rowsAfterTheFirst(image, pageSize);
}

QPushButton *makeButton(int size, const QString &name, QWidget *parent)
{
    auto *button = new QPushButton(parent);
    button->setFixedSize(size, size);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(name);
    button->setToolTip(name);
    return button;
}

QPushButton *makePageButton(QLatin1String image, const QString &name, QWidget *parent)
{
    QPushButton *button = makeButton(pageSize, name, parent);
    button->setStyleSheet(pageStyle(image));
    return button;
}

} // namespace

PreviewToolBar::PreviewToolBar(QWidget *parent)
    : QWidget(parent)
    , m_tools{}
{
    setObjectName(QStringLiteral("previewToolBar"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(barStyle);
    setFixedHeight(barHeight);
    setMouseTracking(true); // the window's border is taken through the bar
    // Made in the order of their places, which is the order of the Tab key.
    m_tools[0] = makeButton(toolSize, tr("原始大小"), this);
    m_tools[1] = makeButton(toolSize, tr("适应窗口"), this);
    m_previous = makePageButton(QLatin1String("btn-preview-5.png"), tr("上一张"), this);
    m_next = makePageButton(QLatin1String("btn-preview-6.png"), tr("下一张"), this);
    m_tools[2] = makeButton(toolSize, tr("放大"), this);
    m_tools[3] = makeButton(toolSize, tr("缩小"), this);
    setAnimated(false);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addStretch();
    layout->addWidget(m_tools[0]);
    layout->addSpacing(betweenTools);
    layout->addWidget(m_tools[1]);
    layout->addSpacing(toolsToPages);
    layout->addWidget(m_previous);
    layout->addSpacing(betweenPages);
    layout->addWidget(m_next);
    layout->addSpacing(toolsToPages);
    layout->addWidget(m_tools[2]);
    layout->addSpacing(betweenTools);
    layout->addWidget(m_tools[3]);
    layout->addStretch();
}

void PreviewToolBar::setAnimated(bool animated)
{
    for (std::size_t number = 0; number < m_tools.size(); ++number) {
        const bool enabled = !animated || number == 0;
        m_tools[number]->setEnabled(enabled);
        m_tools[number]->setStyleSheet(enabled ? enabledStyle(toolImage(number))
                                               : disabledStyle(toolImage(number)));
    }
}
