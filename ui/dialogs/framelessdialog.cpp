#include "ui/dialogs/framelessdialog.h"

#include "ui/style/styles.h"

#include <QGraphicsDropShadowEffect>
#include <QMouseEvent>

namespace {

constexpr QColor shadowColour(127, 127, 127, 127);
constexpr qreal shadowBlurRadius = 5;

constexpr QLatin1String closeImage("btn-close.png");
constexpr int closeRowHeight = 16;
constexpr int closeRows = 3;

} // namespace

FramelessDialog::FramelessDialog(QWidget *parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::Tool | Qt::MSWindowsFixedSizeDialogHint | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
}

void FramelessDialog::setVisible(bool visible)
{
    QDialog::setVisible(visible);
    if (visible) {
        activateWindow(); // Windows shows tool windows without activating them
    }
}

void FramelessDialog::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QDialog::mousePressEvent(event);
        return;
    }
    dragOffset = event->screenPos().toPoint() - frameGeometry().topLeft();
}

void FramelessDialog::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() != Qt::LeftButton) {
        QDialog::mouseMoveEvent(event);
        return;
    }
    move(event->screenPos().toPoint() - dragOffset);
}

QGraphicsDropShadowEffect *FramelessDialog::addCardShadow(QWidget *card)
{
    auto *shadow = new QGraphicsDropShadowEffect(card);
    shadow->setOffset(0, 0);
    shadow->setColor(shadowColour);
    shadow->setBlurRadius(shadowBlurRadius);
    card->setGraphicsEffect(shadow);
    return shadow;
}

QString FramelessDialog::closeButtonStyle()
{
    return styles::threeStateSprite(closeImage, closeRowHeight)
         + QStringLiteral("QPushButton:checked{%1}")
               .arg(styles::spriteRow(closeImage, closeRows - 1, closeRows, closeRowHeight));
}
