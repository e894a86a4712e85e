#pragma once

#include <QString>

#include <optional>

/// The port of the guard channel as the installation at \a place says: "Miravel.ini" itself, or a
/// folder with "config/Miravel.ini" in it. Nothing, and a sentence in \a error, when there is none.
[[nodiscard]] std::optional<quint16> channelPort(const QString &place, QString &error);
