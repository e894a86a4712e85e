#include "localchannel/descriptorroom.h"

bool hasDescriptorsToSpare(qintptr descriptor)
{
    Q_UNUSED(descriptor)
    return true; // sockets are handles there, of which a process may have millions
}
