#pragma once

#include <QVector>
#include <QWidget>

class QPushButton;

/// The bar at the foot of a tall answer: thin lines and a small button that shows or hides the
/// rest.
class FoldBar : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(FoldBar)

public:
    /// A bar inside \a bubble with a line at each of \a lineTops (px) and the button drawn from
    /// \a image below ":/Images/"; \a name is what a screen reader says.
    FoldBar(QLatin1String image, const QString &name, const QVector<int> &lineTops,
            QWidget *bubble);

    /// Shows the bar at \a place, or hides it when that is null.
    void placeAt(const QRect &place);

    /// Whether the button has the window's focus, also while another window is active.
    [[nodiscard]] bool holdsFocus() const;

    [[nodiscard]] QWidget *button() const;

    /// Gives it to the button.
    void takeFocus();

signals:
    void clicked();

private:
    QPushButton *m_button;
};
