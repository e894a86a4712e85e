#include "tests/support/ordinaryuser.h"

#ifdef Q_OS_WIN

OrdinaryUser::OrdinaryUser() = default;
OrdinaryUser::~OrdinaryUser() = default;

#else

#include <unistd.h>

OrdinaryUser::OrdinaryUser()
    : m_user(geteuid())
{
    constexpr uid_t nobody = 65534;
    m_isOrdinary = m_user != 0 || seteuid(nobody) == 0;
}

OrdinaryUser::~OrdinaryUser()
{
    if (geteuid() != m_user && seteuid(m_user) != 0) {
        qFatal("The rights of before cannot be taken back");
    }
}

#endif
