#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

class QPushButton;

/// The quiet mark of a row under the mouse: a faint rounded tint over all of the row, which takes
/// no part in layout, mouse or keyboard. It exists only while the mouse is on the row's button. GUI
/// thread only.
class HoverMark : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(HoverMark)

public:
    /// Marks the parent of \a button, which owns this.
    explicit HoverMark(QPushButton *button);

    ~HoverMark() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void removeTint();

    QPushButton *m_button;
    QPointer<QWidget> m_tint; ///< owned by the row too, which may go first
};
