#include "localchannel/peerhasleft.h"

#include <winsock2.h>

bool peerHasLeft(qintptr descriptor)
{
    char first = 0;
    const int length = recv(static_cast<SOCKET>(descriptor), &first, 1, MSG_PEEK);
    return length == 0 || (length < 0 && WSAGetLastError() != WSAEWOULDBLOCK);
}
