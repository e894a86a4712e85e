#include "ui/answer/picture/picturestore.h"

#include "app/base/logstream.h"

PictureStore::PictureStore(const QString &folder)
    : PictureStore(folder, Limits())
{
}

PictureStore::PictureStore(const QString &folder, const Limits &limits)
    : m_limits(limits)
    , m_file(folder)
{
}

void PictureStore::add(const QByteArray &data)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.push_back({data, -1, data.size()});
    m_inMemory += data.size();
    makeRoom();
}

void PictureStore::makeRoom()
{
    bool isWritten = true;
    while (m_inMemory > m_limits.memory && m_oldest < m_entries.size()) {
        Entry &entry = m_entries[m_oldest];
        isWritten = isWritten && moveToFile(entry);
        if (!isWritten) {
            if (m_inMemory <= m_limits.memoryWithoutFile) {
                return;
            }
            forget(entry);
        }
        ++m_oldest;
    }
}

bool PictureStore::moveToFile(Entry &entry)
{
    if (entry.data.isEmpty()) {
        return true;
    }
    const bool isFull = m_fileEnd + entry.size > m_limits.file;
    if (isFull || !m_file.write(m_fileEnd, entry.data)) {
        if (!m_told) {
            LOG_WARNING() << "pictures stay in memory, their temporary file cannot be written: "
                          << (isFull ? QStringLiteral("it is full") : m_file.errorString());
        }
        m_told = true;
        return false;
    }
    entry.place = m_fileEnd;
    m_fileEnd += entry.size;
    m_inMemory -= entry.size;
    entry.data.clear();
    return true;
}

void PictureStore::forget(Entry &entry)
{
    m_inMemory -= entry.data.size();
    entry.data.clear();
    entry.place = -1;
}

QByteArray PictureStore::data(int number)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Entry &entry = m_entries.at(static_cast<std::size_t>(number));
    return entry.place < 0 ? entry.data : m_file.read(entry.place, entry.size);
}

void PictureStore::drop(int number)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    forget(m_entries.at(static_cast<std::size_t>(number)));
}

qint64 PictureStore::bytesInMemory() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_inMemory;
}
