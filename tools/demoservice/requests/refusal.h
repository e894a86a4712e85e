#pragma once

#include <string>

namespace demo {

/// Why a request is not answered. docs/protocol.md lists every code.
enum class Refusal {
    None,
    MalformedRequest,
    BadContentType,
    MissingHeader,
    DuplicateHeader,
    BadTimestamp,
    BadNonce,
    BadBody,
    BadSignature,
    Stale,
    ReplayedNonce,
    UnknownTenant,
    UnknownKey,
    UnknownPath,
    WrongMethod,
    TooLarge,
    Internal
};

/// What belongs to a refusal wherever it is shown.
struct RefusalFacts
{
    const char *code;   ///< member "errorCode" of the reply
    const char *reason; ///< one word for the log line
    int httpStatus;     ///< status of the reply, see RFC 9110 section 15
};

/// The facts of `refusal`; those of None are "0", "-" and 200.
const RefusalFacts &factsOf(Refusal refusal);

/// Whether the signature of a request was right; NotChecked when a header it needs was not there.
enum class SignatureState { NotChecked, Good, Bad };

/// "good", "bad" or "unchecked", as in the log line.
const char *signatureStateName(SignatureState state);

/// What the checks of a request found.
struct Verdict
{
    Refusal refusal = Refusal::None;
    SignatureState signature = SignatureState::NotChecked;
    std::string message; ///< in words, for the caller; never holds a secret or a signature

    bool accepted() const { return refusal == Refusal::None; }
};

} // namespace demo
