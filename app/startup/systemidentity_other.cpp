#include "app/startup/systemidentity.h"

void introduceToSystem()
{
}
