#pragma once

#include <QTimer>
#include <QWidget>

/// The sign of life while questions wait for their answers: three small grey dots at the foot of
/// the conversation, each of which rises in its turn. They stand in the margin beside the entries,
/// lie over no bubble, and let the mouse through. They stand still when the system wants no motion.
/// Hidden, with no timer running, while nothing waits.
class WaitingDots : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(WaitingDots)

public:
    /// The dots inside \a conversation, whose list has its foot at \a foot px.
    WaitingDots(int foot, QWidget *conversation);

    /// One more question waits. The dots are shown once one has waited for 0.4 s.
    void begin();

    /// One question less waits. The dots go with the last.
    void end();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void advance();

    int m_waiting = 0; ///< questions
    int m_step = 0;    ///< of the motion
    QTimer m_patience; ///< runs out when the dots are to be shown
    QTimer m_motion;   ///< runs while the dots are shown and move
};
