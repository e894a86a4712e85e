#pragma once

#include <QByteArray>
#include <QString>

/// Reads \a bytes as UTF-8 up to the first NUL byte, as a C string is read. Bytes that are not
/// UTF-8 become U+FFFD.
[[nodiscard]] QString utf8UpToNul(const QByteArray &bytes);

/// \a text through the system's 8-bit encoding and back, up to the first NUL: what that encoding
/// cannot hold comes back as its substitute.
[[nodiscard]] QString throughLocalEncoding(const QString &text);

/// \a text with U+FFFD for each half of a surrogate pair that lacks the other one: no document in
/// UTF-8 can hold such a half.
[[nodiscard]] QString wholeCharacters(QString text);

/// The current time of day as "hh:mm:ss.zzz", as log messages show it.
[[nodiscard]] QString timeOfDay();
