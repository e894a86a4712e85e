#include "tools/demoservice/requests/noncecache.h"

namespace demo {

NonceCache::NonceCache(std::int64_t keepMs)
    : m_keepMs(keepMs)
{
}

bool NonceCache::remember(const std::string &nonce, std::int64_t nowMs)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    forgetOld(nowMs);
    if (!m_known.insert(nonce).second) {
        return false;
    }
    m_inOrder.push_back({nonce, nowMs});
    return true;
}

void NonceCache::forgetOld(std::int64_t nowMs)
{
    while (!m_inOrder.empty() && m_inOrder.front().atMs < nowMs - m_keepMs) {
        m_known.erase(m_inOrder.front().nonce);
        m_inOrder.pop_front();
    }
}

} // namespace demo
