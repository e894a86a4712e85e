#pragma once

#include <QString>

class NetStateTestThread;

/// Whether trouble is reported on the IT department's site: always for a program started from a
/// shortcut, otherwise when \a diagnosis finds the machine on the internal network (which blocks
/// for up to five seconds). Elsewhere the user is asked to call. Logs which it is.
[[nodiscard]] bool itReportHasSite(NetStateTestThread &diagnosis);

/// Opens the reporting site that the settings file \a configPath names, empty or not, as the
/// desktop opens an address.
void openItReportSite(const QString &configPath);

/// Asks the user to call the support line. Its number is a value of the build, the CMake cache
/// variable MIRAVEL_SUPPORT_TELEPHONE.
[[nodiscard]] QString callItSupportText();
