#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <functional>

/// Watches how long the GUI thread deals with no event: a beat that is due every millisecond is an
/// event like the user's next one, and however late it comes, so late that one would have come.
class StallWatch
{
    Q_DISABLE_COPY_MOVE(StallWatch)

public:
    StallWatch()
    {
        m_beat.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_beat, &QTimer::timeout, &m_beat, [this] { take(); });
    }

    /// The longest stall in ms from the call of \a action on until the event loop has had nothing
    /// to do for a while. The action is called as the handler of an event; it may wait in an event
    /// loop of its own.
    double longestDuring(const std::function<void()> &action)
    {
        m_longest = 0;
        bool done = false;
        QEventLoop loop;
        m_since.start();
        m_beat.start(beatMs);
        QTimer::singleShot(0, &loop, [&] {
            action();
            done = true;
        });
        QTimer settle;
        QObject::connect(&settle, &QTimer::timeout, &loop, [&] {
            if (done) {
                loop.quit();
            }
        });
        settle.start(settleMs);
        loop.exec();
        m_beat.stop();
        return m_longest;
    }

private:
    static constexpr int beatMs = 1;
    static constexpr int settleMs = 120;

    void take()
    {
        constexpr double ms = 1e6;
        const double late = static_cast<double>(m_since.nsecsElapsed()) / ms - beatMs;
        m_longest = std::max(m_longest, late);
        m_since.start();
    }

    QTimer m_beat;
    QElapsedTimer m_since;
    double m_longest = 0;
};
