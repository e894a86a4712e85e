#include "app/startup/bearerplugins.h"

#include <QCoreApplication>
#include <QNetworkConfigurationManager>
#include <QStringList>

void leaveOutBearerPlugins()
{
    // Qt looks for these plugins once, when it makes the first such object.
    const QStringList paths = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    {
        QT_WARNING_PUSH
        QT_WARNING_DISABLE_DEPRECATED
        const QNetworkConfigurationManager manager;
        QT_WARNING_POP
    }
    QCoreApplication::setLibraryPaths(paths);
}
