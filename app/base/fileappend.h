#pragma once

class QByteArray;
class QString;

/// Adds \a bytes to the end of the file \a path in one piece, so that several processes may do so
/// at once without losing anything; makes the file, never its folder. False when the file cannot be
/// opened; bytes for which there is no room are lost. Nothing here logs. Any thread.
bool appendToFile(const QString &path, const QByteArray &bytes);
