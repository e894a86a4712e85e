#pragma once

#include <QStringList>
#include <QVariant>

#include <optional>

/// What \a text, a value of a settings file without its quotes and escapes, stands for. Mostly
/// itself; after an "@" it may be written as Qt writes what is no text. Texts and numbers are read
/// then; geometry gives a value that is neither. Nothing for what is stored in Qt's binary form and
/// is neither text nor number: reading such a one may take any amount of memory, or a file.
[[nodiscard]] std::optional<QVariant> settingsValue(const QString &text);
