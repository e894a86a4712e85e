#pragma once

#include <QString>

/// The messages of the assistant that the window itself has to say, translated in the window's
/// context.
namespace fixedmessages {

/// The first answer: the service is there.
[[nodiscard]] QString greeting();

/// Questions are not asked yet: the desktop is not logged in.
[[nodiscard]] QString notLoggedIn();

/// The service cannot be reached.
[[nodiscard]] QString noNetwork();

/// The hot questions could not be fetched anew, the local ones are shown instead.
[[nodiscard]] QString refreshFailed();

/// The service's hot questions are back.
[[nodiscard]] QString refreshed();

} // namespace fixedmessages
