#include "service/request/deadlinewait.h"

#include <QtGlobal>

DeadlineWait::DeadlineWait(int timeoutMs)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer); // a coarse one may fire before its time
    m_timer.setInterval(qMax(0, timeoutMs));
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { expire(); });
}

DeadlineWait::~DeadlineWait()
{
    QObject::disconnect(m_ending);
}

DeadlineWait::End DeadlineWait::exec()
{
    if (!m_ended) {
        m_deadline.setRemainingTime(m_timer.interval(), Qt::PreciseTimer);
        m_timer.start();
        m_loop.exec();
        m_timer.stop();
    }
    QObject::disconnect(m_ending);
    if (m_expired) {
        return End::TooLate;
    }
    return m_ended ? End::InTime : End::GivenUp;
}

void DeadlineWait::end()
{
    m_ended = true;
    m_timer.stop();
    m_loop.quit();
}

void DeadlineWait::expire()
{
    // The system's timers may fire a moment before their time.
    const qint64 left = m_deadline.remainingTime();
    if (left > 0) {
        m_timer.start(static_cast<int>(left));
        return;
    }
    m_expired = true;
    m_loop.quit();
}
