#pragma once

#include "Server/Itemhub/ItemhubSignIn.h"
#include "Server/Network/Http.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace Vs::Itemhub {

/// The connections to one service: one per request in progress, kept for reuse. May be used from any
/// thread and concurrently.
class Connections
{
public:
    explicit Connections(Access access);

    /// Sends a request as the user. If the service rejects the token and it can be renewed, retries once
    /// with a new one; if only the clock was wrong, retries once with the service's time.
    [[nodiscard]] Network::Answer ask(const Network::Request& request, const Network::Watch& watch);
    /// The current credentials: the token may have been renewed.
    [[nodiscard]] Access access() const;
    /// `keeper` receives renewed credentials, on an arbitrary thread.
    void onRenewed(std::function<void(const Access&)> keeper);

private:
    [[nodiscard]] std::unique_ptr<Network::Http> make() const;
    [[nodiscard]] std::unique_ptr<Network::Http> take();
    /// True if the token now differs from the one that was refused.
    [[nodiscard]] bool renew(const std::string& refused);
    [[nodiscard]] bool renewSigned(Access& access) const;
    /// The service's time, in seconds since 1970.
    [[nodiscard]] std::int64_t now() const;
    /// True if the service refused the timestamp of a signed request and reported its own, which is used
    /// from then on.
    [[nodiscard]] bool tellsTime(const Network::Answer& refusal);

    mutable std::mutex m_mutex;
    std::atomic<std::int64_t> m_ahead = 0; ///< How many seconds the service's clock is ahead of this one.
    std::mutex m_renewing;                 ///< So that only one of many refused requests renews the token.
    Access m_access;
    std::vector<std::unique_ptr<Network::Http>> m_idle;
    std::function<void(const Access&)> m_keeper;
};

} // namespace Vs::Itemhub
