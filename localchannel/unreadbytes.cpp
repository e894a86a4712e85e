#include "localchannel/unreadbytes.h"

UnreadBytes::UnreadBytes(qint64 limit)
    : m_limit(limit)
{
}

void UnreadBytes::add(qint64 bytes)
{
    std::unique_lock lock(m_mutex);
    m_unread += bytes;
    m_room.wait(lock, [this] { return m_open || m_unread <= m_limit; });
}

void UnreadBytes::take(qint64 bytes)
{
    const std::lock_guard lock(m_mutex);
    m_unread -= bytes;
    m_room.notify_all();
}

void UnreadBytes::open()
{
    const std::lock_guard lock(m_mutex);
    m_open = true;
    m_room.notify_all();
}
