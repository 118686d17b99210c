#pragma once

#include "Server/Itemhub/ItemhubSignIn.h"
#include "Server/Network/Http.h"

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
    /// new one.
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

    mutable std::mutex m_mutex;
    std::mutex m_renewing; ///< So that of many refused requests one renews.
    Access m_access;
    std::vector<std::unique_ptr<Network::Http>> m_idle;
    std::function<void(const Access&)> m_keeper;
};

} // namespace Vs::Itemhub
