#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <unordered_map>

namespace Itemhub::Access {

/// Protects a process from a client that asks too often. Each process counts for itself; what must hold for
/// all of them, failed sign-ins, stands in the database. Thread-safe.
class RateLimit
{
public:
    /// @param perSecond 0 for no limit; for a moment, four times as many are taken
    explicit RateLimit(double perSecond) : m_perSecond(perSecond) {}

    /// Whether one more request of the client is taken.
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
