#pragma once

#include "tools/conformance/check.h"
#include "tools/conformance/examinee.h"

/// Makes wrong requests of \a call, each wrong in one way, and sees that each is refused.
[[nodiscard]] Checks checkRefusals(const Examinee &examinee, CallName call);

/// Sees that a nonce is good for one request, and that only a request with a right signature uses
/// one up.
[[nodiscard]] Checks checkNonces(const Examinee &examinee, CallName call);
