#include "tests/soak/ownhandles.h"

QString ownHandles()
{
    return {};
}
