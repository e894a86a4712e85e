#include "service/gateway/clientlibrary.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

bool ClientLibrary::loadFile()
{
    m_handle = dlopen(QFile::encodeName(m_file).constData(), RTLD_LAZY);
    if (m_handle == nullptr) {
        m_reason = QString::fromLocal8Bit(dlerror());
    }
    return m_handle != nullptr;
}

QFunctionPointer ClientLibrary::resolve(const char *name) const
{
    return m_handle == nullptr ? nullptr
                               : reinterpret_cast<QFunctionPointer>(dlsym(m_handle, name));
}

void ClientLibrary::unload()
{
    if (m_handle != nullptr) {
        dlclose(m_handle);
        m_handle = nullptr;
    }
}

QStringList ClientLibrary::places(const QString &name)
{
    QStringList folders{QCoreApplication::applicationDirPath()};
    folders += qEnvironmentVariable("LD_LIBRARY_PATH").split(u':', Qt::SkipEmptyParts);
    const QStringList names{QStringLiteral("lib%1.so").arg(name),
                            QStringLiteral("%1.so").arg(name)};
    QStringList found;
    for (const QString &folder : qAsConst(folders)) {
        for (const QString &fileName : names) {
            const QString file = folder + QLatin1Char('/') + fileName;
            if (QFileInfo(file).isFile()) {
                found.append(file);
            }
        }
    }
    return found + names; // the names: the system has places of its own
}
