#pragma once

#include "ui/answer/picture/scratchfile.h"

#include <QByteArray>
#include <QString>

#include <mutex>
#include <vector>

/// The data of the conversation's pictures as they came, by the pictures' numbers. The newest are
/// in memory, up to a limit, the older ones in one temporary file. Where that cannot be written,
/// because the disc is full, more stay in memory, and in the end the oldest are given up. Any
/// thread.
class PictureStore
{
    Q_DISABLE_COPY(PictureStore)

public:
    /// In bytes.
    struct Limits
    {
        qint64 memory = qint64(32) * 1024 * 1024;
        qint64 file = qint64(4) * 1024 * 1024 * 1024;
        qint64 memoryWithoutFile = qint64(256) * 1024 * 1024;
    };

    /// The file will lie in \a folder.
    explicit PictureStore(const QString &folder);
    PictureStore(const QString &folder, const Limits &limits);

    /// Keeps \a data, maybe empty, as those of the next number. The first time that the file cannot
    /// be written gives a warning in the log.
    void add(const QByteArray &data);

    /// The data of picture \a number; empty when there are none, or no longer.
    [[nodiscard]] QByteArray data(int number);

    /// Forgets the data of picture \a number.
    void drop(int number);

    /// What is in memory now.
    [[nodiscard]] qint64 bytesInMemory() const;

private:
    struct Entry
    {
        QByteArray data;   ///< while they are in memory
        qint64 place = -1; ///< in the file, once they are there
        int size = 0;
    };

    void makeRoom();
    [[nodiscard]] bool moveToFile(Entry &entry);
    void forget(Entry &entry);

    const Limits m_limits;
    mutable std::mutex m_mutex;
    std::vector<Entry> m_entries; // guarded by m_mutex, as all that follows
    std::size_t m_oldest = 0;     // that may still be in memory
    qint64 m_inMemory = 0;
    qint64 m_fileEnd = 0;
    bool m_told = false; // that the file cannot be written
    ScratchFile m_file;
};
