#include "resources/resources.h"

#include <QDir>

// Q_INIT_RESOURCE declares the generated function in its own scope, so it stands in no namespace.
void initResources()
{
    Q_INIT_RESOURCE(miravel);
}
