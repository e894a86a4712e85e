#include "ui/mainwindow/frame/titlebar.h"

#include "ui/style/scaledpicture.h"
#include "ui/style/styles.h"
#include "ui/style/surfaceshadow.h"
#include "ui/style/windowsize.h"

#include <QPushButton>

namespace {

constexpr QRect containerPlace(0, 0, windowSize.width(), 59);
constexpr QRect barPlace(1, 1, windowSize.width(), 56);
constexpr QRect picturePlace(24, 16, 111, 26);
constexpr int buttonSize = 16;
constexpr int buttonTop = 21;
constexpr int aboutLeft = 828;
constexpr int minimiseLeft = 855;
constexpr int closeLeft = 882;

QPushButton *makeButton(int left, const QString &style, const QString &name, QWidget *parent)
{
    auto *button = new QPushButton(parent);
    button->setGeometry(left, buttonTop, buttonSize, buttonSize);
    button->setStyleSheet(style);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::TabFocus); // the mouse leaves the focus where it was
    button->setAccessibleName(name);
    button->setToolTip(name);
    return button;
}

QString aboutStyle(TitleBar::AboutButton about)
{
    QString style
        = QStringLiteral("QPushButton{border-image: url(:/Images/btn-about.png);border:none;}");
    if (about == TitleBar::AboutButton::OpensDialog) {
        return style;
    }
    return style + QLatin1String("QPushButton::menu-indicator{image:none;}");
}

} // namespace

TitleBar::TitleBar(AboutButton about, QWidget *parent)
    : QWidget(parent)
{
    setGeometry(containerPlace);
    auto *bar = new QWidget(this);
    bar->setGeometry(barPlace);
    bar->setObjectName(QStringLiteral("titleBar"));
    bar->setStyleSheet(QStringLiteral("QWidget#titleBar{border-image: url(:/Images/top-bg.png);}"));
    addSurfaceShadow(bar);
    // Inside the bar, so that the shadow is never painted over them; at the container's place.
    auto *front = new QWidget(bar);
    front->setGeometry(containerPlace.translated(-barPlace.topLeft()));
    auto *picture = new ScaledPicture(front);
    picture->setGeometry(picturePlace);
    picture->setAttribute(Qt::WA_TranslucentBackground);
    picture->setPicture(QStringLiteral("top-nav-title.png"));
    picture->setAccessibleName(QStringLiteral("Miravel")); // it shows the name

    m_about = makeButton(aboutLeft, aboutStyle(about), tr("关于"), front);
    QPushButton *minimise = makeButton(
        minimiseLeft, styles::threeStateSprite(QLatin1String("btn-min.png"), buttonSize),
        tr("最小化"), front);
    QPushButton *close = makeButton(
        closeLeft, styles::threeStateSprite(QLatin1String("btn-close.png"), buttonSize), tr("关闭"),
        front);
    connect(m_about, &QPushButton::clicked, this, &TitleBar::aboutClicked);
    connect(minimise, &QPushButton::clicked, this, &TitleBar::minimiseClicked);
    connect(close, &QPushButton::clicked, this, &TitleBar::closeClicked);
}
