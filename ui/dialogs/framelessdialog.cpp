#include "ui/dialogs/framelessdialog.h"

#include "ui/style/roundedmask.h"
#include "ui/style/screenfollower.h"
#include "ui/style/styles.h"

#include <QGraphicsDropShadowEffect>
#include <QLayout>
#include <QMouseEvent>
#include <QScreen>

#include <algorithm>

namespace {

constexpr QColor shadowColour(127, 127, 127, 127);
constexpr qreal shadowBlurRadius = 5;
constexpr int cardRadius = 4; // as in the style of the forms' cards

// Stands in for the shadow where that would be black.
constexpr int outlineWidth = 1;
constexpr QColor outlineColour(208, 210, 217);

const QLatin1String closeImage("btn-close.png");
constexpr int closeRowHeight = 16;
constexpr int closeRows = 3;

} // namespace

FramelessDialog::FramelessDialog(QWidget *parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::Tool | Qt::MSWindowsFixedSizeDialogHint | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    new ScreenFollower(this); // which the dialog owns
}

QPoint placeOverParent(const QRect &parent, const QSize &size, const QRect &screen)
{
    QRect place(QPoint(), size);
    place.moveTopLeft({parent.x() + (parent.width() - size.width()) / 2,
                       parent.y() + (parent.height() - size.height()) / 2});
    place.moveRight(std::min(place.right(), screen.right()));
    place.moveBottom(std::min(place.bottom(), screen.bottom()));
    return {std::max(place.left(), screen.left()), std::max(place.top(), screen.top())};
}

void FramelessDialog::setVisible(bool visible)
{
    if (visible && !isVisible()) {
        ensurePolished();
        layout()->activate(); // its size is that of what is in it
        placeItself();
        if (!m_card.isNull()) {
            const QMargins outline(outlineWidth, outlineWidth, outlineWidth, outlineWidth);
            cutWithoutCompositor(*this, m_card->geometry() + outline, cardRadius + outlineWidth);
        }
    }
    QDialog::setVisible(visible);
    if (visible) {
        activateWindow(); // Windows shows tool windows without activating them
    }
}

void FramelessDialog::placeItself()
{
    const QWidget *parent = parentWidget();
    if (parent == nullptr || testAttribute(Qt::WA_Moved)) {
        return;
    }
    const QWidget *window = parent->window();
    const QRect screen = window->screen()->availableGeometry();
    move(placeOverParent(window->frameGeometry(), size(), screen));
}

void FramelessDialog::paintEvent(QPaintEvent *event)
{
    fillWithoutCompositor(*this, outlineColour);
    QDialog::paintEvent(event);
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
    m_card = card;
    return shadow;
}

QString FramelessDialog::closeButtonStyle()
{
    return styles::threeStateSprite(closeImage, closeRowHeight)
         + QStringLiteral("QPushButton:checked{%1}")
               .arg(styles::spriteRow(closeImage, closeRows - 1, closeRows, closeRowHeight));
}
