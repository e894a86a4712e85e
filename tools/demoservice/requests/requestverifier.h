#pragma once

#include "tools/demoservice/requests/noncecache.h"
#include "tools/demoservice/requests/refusal.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace demo {

/// The header lines of a request: name in small letters, values in the order they came.
using HeaderLines = std::map<std::string, std::vector<std::string>>;

/// Checks the header lines of a request: all there, tenant, key, timestamp, nonce and signature.
/// Any thread may use it.
class RequestVerifier
{
public:
    RequestVerifier(std::string tenant, std::string key, std::string secret,
                    std::int64_t maxSkewMs);

    /// The verdict at the time `nowMs` (ms since 1970). A nonce counts as used only when all else
    /// is right, so that nobody without the secret can use up somebody's nonce.
    Verdict verify(const HeaderLines &headers, std::int64_t nowMs);

private:
    Verdict checkValues(const HeaderLines &headers, std::int64_t nowMs) const;
    SignatureState signatureState(const HeaderLines &headers) const;

    const std::string m_tenant;
    const std::string m_key;
    const std::string m_secret;
    const std::int64_t m_maxSkewMs;
    NonceCache m_nonces;
};

} // namespace demo
