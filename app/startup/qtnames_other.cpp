#include "app/startup/qtnames.h"

void hideQtNames()
{
}
