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

/// The connections to one service, one for each request that is under way, which are kept for the next ones.
/// Any thread, several at once.
class Connections
{
public:
    explicit Connections(Access access);

    /// Asks as the user; where the service no longer takes the token and it can be renewed, once more with a
    /// new one, and once more with the service's time where only that was wrong.
    [[nodiscard]] Network::Answer ask(const Network::Request& request, const Network::Watch& watch);
    /// As it is now: a token may have been renewed.
    [[nodiscard]] Access access() const;
    /// Is told of renewed credentials, on whichever thread.
    void onRenewed(std::function<void(const Access&)> keeper);

private:
    [[nodiscard]] std::unique_ptr<Network::Http> make() const;
    [[nodiscard]] std::unique_ptr<Network::Http> take();
    /// True if another token than the one that was refused is there then.
    [[nodiscard]] bool renew(const std::string& refused);
    [[nodiscard]] bool renewSigned(Access& access) const;
    /// The service's time, in seconds since 1970.
    [[nodiscard]] std::int64_t now() const;
    /// True if the service refused the time of a signed request and told its own, which counts from then on.
    [[nodiscard]] bool tellsTime(const Network::Answer& refusal);

    mutable std::mutex m_mutex;
    std::atomic<std::int64_t> m_ahead = 0; ///< How many seconds the service's clock is ahead of this one.
    std::mutex m_renewing;                 ///< So that of many refused requests one renews.
    Access m_access;
    std::vector<std::unique_ptr<Network::Http>> m_idle;
    std::function<void(const Access&)> m_keeper;
};

} // namespace Vs::Itemhub
