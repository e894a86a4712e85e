#include "tests/support/unreadablefile.h"

#include "tests/support/ordinaryuser.h"

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

struct UnreadableFile::Hold
{
    OrdinaryUser user;
};

UnreadableFile::UnreadableFile(const QString &path)
{
    QFile::setPermissions(path, QFile::WriteOwner);
    m_hold = std::make_unique<Hold>();
}

UnreadableFile::~UnreadableFile() = default;

const char *UnreadableFile::whyNot() const
{
    return m_hold->user.isOrdinary() ? nullptr : "root cannot become another user here";
}

#endif
