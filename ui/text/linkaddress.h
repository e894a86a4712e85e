#pragma once

#include <QString>

class QUrl;

/// Whether a link in a text from elsewhere may lead to \a url: to the web (http and https, with a
/// host) or to a mail address. Nothing else is opened: schemes start programs, a drive letter is a
/// scheme, and what has no scheme is a file.
[[nodiscard]] bool mayBeOpened(const QUrl &url);

/// \a address as a person can check it: characters that turn, hide or imitate text (control and
/// format characters, blanks other than the common one, fillers without a picture) are written as
/// "\u{202E}", their number in hexadecimal. A very long address is cut and ends with an ellipsis.
[[nodiscard]] QString readableAddress(const QString &address);

/// The tool tip that says where the link \a address leads: the readable address, in lines where it
/// is long, never taken for markup. Empty for an empty address.
[[nodiscard]] QString linkToolTip(const QString &address);

/// Opens the link \a address with the desktop if it may be opened, and names it in the log
/// otherwise. GUI thread.
void followLink(const QString &address);

/// Names the link \a address in the log as one that is not opened.
void refuseLink(const QString &address);
