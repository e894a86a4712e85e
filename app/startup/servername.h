#pragma once

class QString;

/// Whether the local server name \a name stands for the program's own file. On Unix such a name is
/// a path in the folder for temporary files, and QLocalServer::removeServer() deletes the file that
/// lies there: when that folder happens to be the program's own, the program itself. On Windows a
/// name is no file.
[[nodiscard]] bool isOwnFile(const QString &name);
