#include "app/startup/qtnames.h"

#include <QProcessEnvironment>

#include <windows.h>

#include <algorithm>
#include <cstdlib>

void hideQtNames()
{
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QStringList names = environment.keys();
    const auto isOthers = [](const QString &name) {
        return !name.startsWith(QLatin1String("QT_"), Qt::CaseInsensitive);
    };
    names.erase(std::remove_if(names.begin(), names.end(), isOthers), names.end());
    // Qt reads the copies that the C library keeps. The one of wide characters is made when it is
    // first read, so that has to be before the system has the names again.
    static_cast<void>(_wgetenv(L"PATH"));
    for (const QString &name : qAsConst(names)) {
        qunsetenv(name.toLocal8Bit().constData());
    }
    for (const QString &name : qAsConst(names)) {
        SetEnvironmentVariableW(name.toStdWString().c_str(),
                                environment.value(name).toStdWString().c_str());
    }
}
