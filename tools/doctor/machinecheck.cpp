#include "tools/doctor/machinecheck.h"

#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "tools/doctor/portowner.h"

#include <QDir>
#include <QFileInfo>

namespace {

constexpr int highestPort = 65535;

Finding checkGuardPort(int port)
{
    const auto owner = ownerOfPort(static_cast<quint16>(port));
    const QString what = QStringLiteral("the guard tool's port %1").arg(port);
    if (!owner) {
        return good(what + QStringLiteral(" is free"));
    }
    if (owner->program.startsWith(QLatin1String("Miravel"))) {
        return good(what + QStringLiteral(" is the running program's"));
    }
    const QString mend
        = QStringLiteral("End that program, or give SysguardPort/port1 and the guard tool another "
                         "port.");
    if (owner->program.isEmpty()) {
        return note(what + QStringLiteral(" is in use, and the system does not tell by whom"),
                    QStringLiteral("Nothing, if it is the assistant. ") + mend);
    }
    return toMend(
        what
            + QStringLiteral(" is taken by %1, process %2").arg(owner->program).arg(owner->process),
        mend);
}

Finding checkPictureFolder()
{
    const QFileInfo folder(QStringLiteral("gif"));
    const QFileInfo place(folder.isDir() ? folder.filePath() : QStringLiteral("."));
    const QString what = QStringLiteral("moving pictures: ")
                       + QDir::toNativeSeparators(QDir::cleanPath(folder.absoluteFilePath()));
    if (place.isWritable()) {
        return good(what);
    }
    return toMend(what
                      + (folder.isDir() ? QStringLiteral(" cannot be written to")
                                        : QStringLiteral(" cannot be made")),
                  QStringLiteral("Make the folder gif and give the users the right to write there: "
                                 "else pictures do not move."));
}

} // namespace

Findings checkMachine(const QString &path)
{
    Findings findings = {checkPictureFolder()};
    const SettingsFile settings(path);
    const int port = settings.value(settingsName(SettingsKey::GuardPort)).toInt();
    if (port > 0 && port <= highestPort) { // else it has been complained of
        findings.append(checkGuardPort(port));
    }
    return findings;
}
