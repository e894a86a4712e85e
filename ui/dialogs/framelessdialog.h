#pragma once

#include <QDialog>
#include <QPoint>

class QGraphicsDropShadowEffect;

/// What the program's small dialogs have in common: no frame of the window system, a translucent
/// background for the shadow of their card, and dragging by any free place with the left button.
class FramelessDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(FramelessDialog)

public:
    explicit FramelessDialog(QWidget *parent);

    /// Shows or hides the dialog; shown, it has the keyboard.
    void setVisible(bool visible) override;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

    /// Gives \a card, the visible part of the dialog, its soft grey shadow. The effect belongs to
    /// the card.
    static QGraphicsDropShadowEffect *addCardShadow(QWidget *card);

    /// The style of a close button: rows of 16 px for normal, hover and pressed; the strip ends
    /// there, so checked looks like pressed.
    [[nodiscard]] static QString closeButtonStyle();

private:
    QPoint dragOffset; ///< of the cursor from the top left corner at the last left press
};
