#pragma once

#include <QString>

/// What is wrong with a value, as it continues the key's name, and what to do; empty when nothing.
struct Complaint
{
    QString what;
    QString mend = {};
};

// Whether a value of the settings file can be what its key is for.

[[nodiscard]] Complaint checkText(const QString &value);
[[nodiscard]] Complaint checkHost(const QString &value);
[[nodiscard]] Complaint checkPort(const QString &value);
[[nodiscard]] Complaint checkNumber(const QString &value);

/// A number of questions, at least one.
[[nodiscard]] Complaint checkQuantity(const QString &value);

/// The same, and no more than the window has room for.
[[nodiscard]] Complaint checkSuggestionQuantity(const QString &value);

/// The path of a call, which is put directly behind host and port.
[[nodiscard]] Complaint checkPath(const QString &value);

/// An address with its scheme.
[[nodiscard]] Complaint checkAddress(const QString &value);

/// A text in Base64. The complaint does not show it.
[[nodiscard]] Complaint checkBase64(const QString &value);
[[nodiscard]] Complaint checkLevel(const QString &value);
