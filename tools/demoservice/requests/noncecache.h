#pragma once

#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <unordered_set>

namespace demo {

/// The nonces seen lately. Any thread may use it: one mutex guards all of it.
class NonceCache
{
public:
    /// A nonce is remembered for `keepMs` milliseconds: twice the accepted skew, which is how long
    /// a request with a timestamp in the future stays fresh.
    explicit NonceCache(std::int64_t keepMs);

    /// Remembers `nonce` as seen at `nowMs` (ms since 1970). False if it is a replay.
    bool remember(const std::string &nonce, std::int64_t nowMs);

private:
    struct Seen
    {
        std::string nonce;
        std::int64_t atMs;
    };

    void forgetOld(std::int64_t nowMs);

    const std::int64_t m_keepMs;
    std::mutex m_mutex;
    std::unordered_set<std::string> m_known;
    std::deque<Seen> m_inOrder;
};

} // namespace demo
