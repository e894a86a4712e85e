#include "localchannel/peerhasleft.h"

#include <sys/socket.h>

#include <cerrno>

bool peerHasLeft(qintptr descriptor)
{
    char first = 0;
    const ssize_t length = recv(static_cast<int>(descriptor), &first, 1, MSG_PEEK);
    return length == 0 || (length < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR);
}
