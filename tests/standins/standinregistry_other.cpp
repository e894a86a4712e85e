#include "tests/standins/standinregistry.h"

#include <QFile>
#include <QSettings>

namespace {

QString fileOf(const QString &key)
{
    return QStringLiteral("HKEY_LOCAL_MACHINE\\") + key;
}

} // namespace

StandInRegistry::StandInRegistry() = default;

StandInRegistry::~StandInRegistry()
{
    for (const auto &undo : m_undo) {
        undo();
    }
}

const char *StandInRegistry::whyNot()
{
    return nullptr;
}

void StandInRegistry::setText(const QString &key, const QString &name, const QString &text,
                              View view)
{
    Q_UNUSED(view)
    QSettings(fileOf(key), QSettings::NativeFormat).setValue(name, text);
    m_undo.emplace_back([file = fileOf(key)] { QFile::remove(file); });
}

void StandInRegistry::setValue(const QString &key, const QString &name, quint32 type,
                               const QByteArray &bytes, View view)
{
    Q_UNUSED(type)
    setText(key, name, QString::fromUtf8(bytes), view);
}

bool StandInRegistry::hasKey(const QString &key, View view)
{
    Q_UNUSED(view)
    return QFile::exists(fileOf(key));
}
