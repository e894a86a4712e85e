#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

class QPainter;
class QPushButton;

/// Draws the mark of the focus, a thin blue line with rounded corners, along the inside of \a
/// place.
void drawFocusLine(QPainter &painter, const QRect &place);

/// The mark of the focus around a row's button: the text begins where the button does, so the line
/// lies a little outside, on what is around the row. It takes no part in layout, mouse or keyboard,
/// exists only while the button has the focus, and is seen once the keyboard has moved that. GUI
/// thread only.
class FocusMark : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(FocusMark)

public:
    /// Marks \a button, which owns this.
    explicit FocusMark(QPushButton *button);

    ~FocusMark() override;

    /// The mark of \a widget; null when it has none of its own.
    [[nodiscard]] static FocusMark *of(const QWidget *widget);

    /// Shows whether the keyboard has moved the focus, when that has changed.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addLine();
    void removeLine();

    QPushButton *m_button;
    QPointer<QWidget> m_line; ///< owned by what is around the row too, which may go first
};
