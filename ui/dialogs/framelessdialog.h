#pragma once

#include <QDialog>
#include <QPoint>
#include <QPointer>

class QGraphicsDropShadowEffect;

/// Where a dialog of \a size opens: in the middle of \a parent, the place of its parent's window,
/// but inside \a screen; on one that is too small, its top and left edges are seen.
[[nodiscard]] QPoint placeOverParent(const QRect &parent, const QSize &size, const QRect &screen);

/// What the program's small dialogs have in common: no frame of the window system, a translucent
/// background for the shadow of their card, and dragging by any free place with the left button.
/// They open in the middle of their parent's window.
class FramelessDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(FramelessDialog)

public:
    explicit FramelessDialog(QWidget *parent);

    /// Shows or hides the dialog; shown, it has the keyboard.
    void setVisible(bool visible) override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

    /// Gives \a card, the visible part of the dialog, its soft grey shadow. The effect belongs to
    /// the card.
    QGraphicsDropShadowEffect *addCardShadow(QWidget *card);

    /// The style of a close button: rows of 16 px for normal, hover and pressed; the strip ends
    /// there, so checked looks like pressed.
    [[nodiscard]] static QString closeButtonStyle();

private:
    void placeItself();

    QPointer<QWidget> m_card; ///< null without a shadow
    QPoint dragOffset;        ///< of the cursor from the top left corner at the last left press
};
