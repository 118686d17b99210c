#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <unordered_map>

namespace Itemhub::Access {

/// Protects a process from a client that sends too many requests. Each process counts separately; what must
/// hold across all of them, failed sign-ins, is kept in the database. Thread-safe.
class RateLimit
{
public:
    /// @param perSecond 0 for no limit; short bursts of four times as many are allowed
    explicit RateLimit(double perSecond) : m_perSecond(perSecond) {}

    /// Whether one more request of the client is accepted.
    [[nodiscard]] bool take(const std::string& client);

private:
    struct Bucket
    {
        double left;
        std::chrono::steady_clock::time_point at;
    };

    const double m_perSecond;
    std::mutex m_mutex;
    std::unordered_map<std::string, Bucket> m_buckets;
};

} // namespace Itemhub::Access
