#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

/// What the command line asks for.
struct Options
{
    bool help = false;
    quint16 port = 0;
    int timeoutMs = 0;            ///< for each message
    QVector<QByteArray> messages; ///< as they go out, in order
};

/// Reads \a arguments, the program's name first, and what they name. False, and a sentence in
/// \a error, when they make no sense.
[[nodiscard]] bool readOptions(const QStringList &arguments, Options &options, QString &error);

/// What --help prints.
[[nodiscard]] QString usage();
