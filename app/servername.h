#pragma once

class QString;

/// Whether taking over the local server name \a name would remove nothing but a socket. On Unix
/// such a name is a file in the folder for temporary files, and QLocalServer::removeServer()
/// deletes whatever lies there: when that folder happens to be the program's own, the program
/// itself. On Windows a name is no file and nothing is ever removed.
[[nodiscard]] bool mayRemoveServerName(const QString &name);
