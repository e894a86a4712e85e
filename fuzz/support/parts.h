#pragma once

#include <QByteArray>
#include <QByteArrayList>

/// What parts one input into several: no text that is read holds it.
inline constexpr char partSeparator = '\x1e';

/// The parts of \a input, at least \a count; those that are not there are empty.
[[nodiscard]] inline QByteArrayList partsOf(const QByteArray &input, int count)
{
    QByteArrayList parts = input.split(partSeparator);
    while (parts.size() < count) {
        parts.append(QByteArray());
    }
    return parts;
}
