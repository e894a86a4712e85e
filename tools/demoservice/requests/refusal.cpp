#include "tools/demoservice/requests/refusal.h"

#include <array>

namespace demo {

namespace {

// In the order of Refusal.
constexpr std::array<RefusalFacts, 17> facts = {{
    {"0", "-", 200},
    {"40000", "malformed-request", 400},
    {"40001", "bad-content-type", 415},
    {"40002", "missing-header", 400},
    {"40003", "duplicate-header", 400},
    {"40004", "bad-timestamp", 400},
    {"40005", "bad-nonce", 400},
    {"40006", "bad-body", 400},
    {"40101", "bad-signature", 401},
    {"40102", "stale", 401},
    {"40103", "replayed-nonce", 401},
    {"40104", "unknown-tenant", 401},
    {"40105", "unknown-key", 401},
    {"40401", "unknown-path", 404},
    {"40501", "wrong-method", 405},
    {"41301", "too-large", 413},
    {"50001", "internal", 500},
}};

static_assert(facts.size() == static_cast<std::size_t>(Refusal::Internal) + 1);

} // namespace

const RefusalFacts &factsOf(Refusal refusal)
{
    return facts.at(static_cast<std::size_t>(refusal));
}

const char *signatureStateName(SignatureState state)
{
    switch (state) {
    case SignatureState::Good:
        return "good";
    case SignatureState::Bad:
        return "bad";
    case SignatureState::NotChecked:
        break;
    }
    return "unchecked";
}

} // namespace demo
