#pragma once

#include <QtGlobal>

#include <condition_variable>
#include <mutex>

/// The bytes that one thread has handed to another and that are not read yet. It holds the giving
/// thread back while they are too many, so that a client can never send faster than its messages
/// are read. Any thread may use any operation.
class UnreadBytes
{
    Q_DISABLE_COPY(UnreadBytes)

public:
    explicit UnreadBytes(qint64 limit);

    /// Counts \a bytes as handed over, then waits until at most the limit is unread or
    /// open() was called.
    void add(qint64 bytes);

    /// Counts \a bytes as read; this may happen before they are counted as handed over.
    void take(qint64 bytes);

    /// From now on nobody waits any more.
    void open();

private:
    const qint64 m_limit;
    std::mutex m_mutex;
    std::condition_variable m_room;
    qint64 m_unread = 0; // guarded by m_mutex, as is the next
    bool m_open = false;
};
