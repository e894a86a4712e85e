#pragma once

#include <QString>

/// The installation layout: "VELISTRA_NEW" (a caller started the program; config and log lie beside
/// the program's folder) or "INVIRTUAL_SHORTCUT" (started from a shortcut; they lie inside it).
/// This and the two paths are written once by initAppPaths() on the main thread, before any other
/// thread exists, and only read afterwards. Ask installationLayout() which one it is.
extern QString miravelVersion;

/// Base path of the log file, without extension, relative to the program's folder.
extern QString logFolderPath;

/// Path of "Miravel.ini", relative to the program's folder.
extern QString configFilePath;

/// What miravelVersion stands for.
enum class InstallationLayout {
    Unknown,  ///< nothing is found, and every setting reads as missing
    Client,   ///< "VELISTRA_NEW"
    Shortcut, ///< "INVIRTUAL_SHORTCUT"
};

/// Fixes the layout and with it the paths above. Only whether \a callerType is empty counts.
void initAppPaths(const QString &callerType);

/// The layout in force: what miravelVersion says, letter by letter.
[[nodiscard]] InstallationLayout installationLayout();

/// The path on which every class opens "Miravel.ini"; empty when the layout is unknown.
[[nodiscard]] QString miravelConfigPath();

/// The text of the open-source licences; empty when the layout is unknown.
[[nodiscard]] QString licenceTextPath();

/// The virtual-desktop client's own settings file, read only, in the same place in both layouts.
[[nodiscard]] QString clientSettingsPath();
