#include "resources/resources.h"

#include <QDir>

// Outside any namespace: the macro declares the generated function in the scope it stands in.
void initResources()
{
    Q_INIT_RESOURCE(miravel);
}
