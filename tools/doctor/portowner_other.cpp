#include "tools/doctor/portowner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

/// The number under which the kernel knows the socket that listens on \a port; empty for none
/// (proc(5), /proc/net/tcp).
QString listeningSocket(quint16 port)
{
    QFile table(QStringLiteral("/proc/net/tcp"));
    if (!table.open(QIODevice::ReadOnly)) {
        return {};
    }
    constexpr int localAddress = 1;
    constexpr int state = 3;
    constexpr int socket = 9;
    const QString ending = QStringLiteral(":%1").arg(port, 4, 16, QLatin1Char('0')).toUpper();
    const QStringList lines = QString::fromLatin1(table.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QStringList fields = line.simplified().split(QLatin1Char(' '));
        if (fields.size() > socket && fields.at(localAddress).endsWith(ending)
            && fields.at(state) == QLatin1String("0A")) {
            return fields.at(socket);
        }
    }
    return {};
}

bool holds(const QString &process, const QString &socket)
{
    const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(process));
    const QStringList names
        = descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const QString target = QFile::symLinkTarget(descriptors.filePath(name));
        if (target.endsWith(QStringLiteral("socket:[%1]").arg(socket))) {
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<PortOwner> ownerOfPort(quint16 port)
{
    const QString socket = listeningSocket(port);
    if (socket.isEmpty()) {
        return std::nullopt;
    }
    const QStringList processes = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &process : processes) {
        if (process.at(0).isDigit() && holds(process, socket)) {
            const QString program
                = QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(process));
            return PortOwner{process.toLongLong(), QFileInfo(program).fileName()};
        }
    }
    return PortOwner{}; // of another user
}
