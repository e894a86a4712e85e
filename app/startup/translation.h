#pragma once

#include <QString>
#include <QStringList>

class QCoreApplication;

/// The file that would translate the program for a user who prefers \a languages (BCP 47 names,
/// the dearest first): "Miravel_en.qm" for "en-US". Empty for Chinese, which the texts are in
/// already, and where no language is preferred.
[[nodiscard]] QString translationFile(const QStringList &languages);

/// Translates \a app into the system's language when the administrator has put the file for it into
/// \a folder, the program's own. Otherwise nothing changes; that costs one look at the folder at
/// most, and none for a Chinese system. Before the first widget, on the GUI thread.
void installTranslation(QCoreApplication &app, const QString &folder);
