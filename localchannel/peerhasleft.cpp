#include "localchannel/peerhasleft.h"

#ifdef Q_OS_WIN

#include <winsock2.h>

bool peerHasLeft(qintptr descriptor)
{
    char first = 0;
    const int length = recv(static_cast<SOCKET>(descriptor), &first, 1, MSG_PEEK);
    return length == 0 || (length < 0 && WSAGetLastError() != WSAEWOULDBLOCK);
}

#else

#include <sys/socket.h>

#include <cerrno>

bool peerHasLeft(qintptr descriptor)
{
    char first = 0;
    const ssize_t length = recv(static_cast<int>(descriptor), &first, 1, MSG_PEEK);
    return length == 0 || (length < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR);
}

#endif
