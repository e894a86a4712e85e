#include "channelport.h"

#include <QFileInfo>
#include <QSettings>

namespace {

const QLatin1String portKey("SysguardPort/port1");

} // namespace

std::optional<quint16> channelPort(const QString &place, QString &error)
{
    const QString file
        = QFileInfo(place).isDir() ? place + QStringLiteral("/config/Miravel.ini") : place;
    if (!QFileInfo(file).isFile() || !QFileInfo(file).isReadable()) {
        error = QStringLiteral("\"%1\" cannot be read").arg(file);
        return std::nullopt;
    }
    const QSettings settings(file, QSettings::IniFormat);
    if (!settings.contains(portKey)) {
        error = QStringLiteral("\"%1\" has no %2; the assistant then listens on a port that nobody "
                               "can know")
                    .arg(file, portKey);
        return std::nullopt;
    }
    const QString text = settings.value(portKey).toString();
    bool isNumber = false;
    // The assistant too takes a number that is no port modulo 65536.
    const auto port = static_cast<quint16>(text.toInt(&isNumber));
    if (!isNumber || port == 0) {
        error = QStringLiteral("%1 in \"%2\" is \"%3\", which is no port").arg(portKey, file, text);
        return std::nullopt;
    }
    return port;
}
