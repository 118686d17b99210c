#include "Services/Itemhub/Access/RateLimit.h"

#include <algorithm>

namespace Itemhub::Access {

bool RateLimit::take(const std::string& client)
{
    constexpr double kBurst = 4;
    constexpr size_t kMostClients = 10'000;
    if (m_perSecond <= 0)
        return true;
    const auto now = std::chrono::steady_clock::now();
    const double most = m_perSecond * kBurst;
    const auto filled = [&](const Bucket& bucket) {
        return std::min(most,
                        bucket.left + m_perSecond * std::chrono::duration<double>(now - bucket.at).count());
    };
    const std::lock_guard lock(m_mutex);
    if (m_buckets.size() >= kMostClients)
        std::erase_if(m_buckets, [&](const auto& entry) { return filled(entry.second) >= most; });
    Bucket& bucket = m_buckets.try_emplace(client, Bucket{most, now}).first->second;
    bucket = {filled(bucket), now};
    if (bucket.left < 1)
        return false;
    bucket.left -= 1;
    return true;
}

} // namespace Itemhub::Access
