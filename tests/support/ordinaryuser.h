#pragma once

#include <QtGlobal>

#ifndef Q_OS_WIN
#include <unistd.h>
#endif

/// While it lives, the process has no more rights to files than an ordinary user: a root user, whom
/// no permission keeps out, becomes nobody for that time. Folders on the way must be open to all.
class OrdinaryUser final
{
    Q_DISABLE_COPY_MOVE(OrdinaryUser)

public:
#ifdef Q_OS_WIN
    OrdinaryUser() = default;
    ~OrdinaryUser() = default;

    /// Null when permissions are kept here, otherwise why not.
    [[nodiscard]] const char *whyNot() const
    {
        return "the toolkit takes no right to read away on Windows";
    }
#else
    OrdinaryUser()
        : m_user(geteuid())
        , m_ordinary(m_user != 0 || seteuid(nobody) == 0)
    {
    }

    ~OrdinaryUser()
    {
        if (geteuid() != m_user && seteuid(m_user) != 0) {
            qFatal("The rights of before cannot be taken back");
        }
    }

    /// Null when permissions are kept here, otherwise why not.
    [[nodiscard]] const char *whyNot() const
    {
        return m_ordinary ? nullptr : "root cannot become another user here";
    }

private:
    static constexpr uid_t nobody = 65534;

    uid_t m_user;
    bool m_ordinary;
#endif
};
