#pragma once

#include <QByteArray>
#include <QStringList>

/// One line of a settings file: places in its bytes.
struct SettingsLine
{
    int start = 0;   ///< of its first character that is no blank
    int end = 0;     ///< behind its last character
    int equals = -1; ///< of its first equals sign outside of quotes, or -1
};

/// Finds the next line of \a bytes from \a place on, which is moved behind it. A line ends where
/// its text does: at a line end or a semicolon outside of quotes, neither of them escaped. Empty
/// lines and comments are passed over. False when there is none any more.
[[nodiscard]] bool nextSettingsLine(const QByteArray &bytes, int &place, SettingsLine &line);

/// A name of a group or key: its backslashes separate groups, %xx and %Uxxxx stand for characters.
[[nodiscard]] QString settingsKeyText(const QByteArray &bytes);

/// A value of \a bytes: blanks around it, quotes and escapes taken away, in pieces when it has
/// commas outside of quotes, else one. \a isUtf8 says how it is encoded, otherwise in Latin-1.
[[nodiscard]] QStringList settingsTexts(const QByteArray &bytes, bool isUtf8);
