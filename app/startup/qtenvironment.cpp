#include "app/startup/qtenvironment.h"

#include <QProcessEnvironment>

void clearQtEnvironment()
{
    const QStringList names = QProcessEnvironment::systemEnvironment().keys();
    for (const QString &name : names) {
        if (name.contains(QLatin1String("QT"), Qt::CaseSensitive)) {
            qunsetenv(name.toLocal8Bit().constData());
        }
    }
}
