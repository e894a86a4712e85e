#include "service/request/tlslibrary.h"

void ignoreTlsConfiguration()
{
}
