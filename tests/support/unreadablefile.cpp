#include "tests/support/unreadablefile.h"

#include <QFile>

#ifdef Q_OS_WIN

#include <windows.h>

struct UnreadableFile::Hold
{
    HANDLE file; ///< shared with nobody
};

UnreadableFile::UnreadableFile(const QString &path)
    : m_hold(std::make_unique<Hold>())
{
    m_hold->file = CreateFileW(qUtf16Printable(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                               FILE_ATTRIBUTE_NORMAL, nullptr);
}

UnreadableFile::~UnreadableFile()
{
    if (m_hold->file != INVALID_HANDLE_VALUE) {
        CloseHandle(m_hold->file);
    }
}

const char *UnreadableFile::whyNot() const
{
    return m_hold->file == INVALID_HANDLE_VALUE ? "the file cannot be held" : nullptr;
}

#else

#include <unistd.h>

struct UnreadableFile::Hold
{
    uid_t user;
    bool isOrdinary;
};

UnreadableFile::UnreadableFile(const QString &path)
    : m_hold(std::make_unique<Hold>())
{
    constexpr uid_t nobody = 65534;
    QFile::setPermissions(path, QFile::WriteOwner);
    m_hold->user = geteuid();
    m_hold->isOrdinary = m_hold->user != 0 || seteuid(nobody) == 0;
}

UnreadableFile::~UnreadableFile()
{
    if (geteuid() != m_hold->user && seteuid(m_hold->user) != 0) {
        qFatal("The rights of before cannot be taken back");
    }
}

const char *UnreadableFile::whyNot() const
{
    return m_hold->isOrdinary ? nullptr : "root cannot become another user here";
}

#endif
