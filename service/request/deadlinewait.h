#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

/// Waits for a signal in a nested event loop, for a limited time; the thread's other events are
/// handled meanwhile. Made, used and destroyed on one thread.
///
/// Waits of one thread end in the reverse order of their beginning, so an outer time limit may pass
/// while an inner wait still runs. What counts is which came first, the signal or the limit, not
/// when the loop gets round to ending. A loop that ends because the thread or the application quits
/// has been given up.
class DeadlineWait final
{
    Q_DISABLE_COPY_MOVE(DeadlineWait)

public:
    /// A wait of at most \a timeoutMs milliseconds, counted from exec().
    explicit DeadlineWait(int timeoutMs);
    ~DeadlineWait();

    /// Ends the wait when \a sender, which outlives it, emits \a signal. A signal that comes before
    /// exec() counts.
    template <typename Sender, typename Signal>
    void endOn(const Sender *sender, Signal signal)
    {
        m_ending = QObject::connect(sender, signal, &m_timer, [this] { end(); });
    }

    /// How a wait has ended.
    enum class End {
        InTime,  ///< by the signal
        TooLate, ///< by the time limit
        GivenUp, ///< by neither: the thread or the application quits
    };

    /// Waits.
    [[nodiscard]] End exec();

private:
    void startTimer(qint64 leftMs);
    void end();
    void expire();

    int m_timeoutMs;
    QEventLoop m_loop;
    QTimer m_timer;
    QDeadlineTimer m_deadline; ///< of the wait that goes on
    QMetaObject::Connection m_ending;
    bool m_ended = false;
    bool m_expired = false;
};
