#pragma once

#include "Server/Network/Certificate.h"
#include "Server/Network/Request.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace Vs::Network {

class Exchange;

/// Digest authentication of the caller, which needs the server's challenge first; otherwise empty.
struct DigestLogin
{
    QByteArray user, password;
};

/// The connections to a server, which stay open between requests. One thread at a time; everything runs on
/// the waiting thread, so that none of its events are handled meanwhile.
class Connection
{
public:
    /// Called about ten times a second with the bytes done and the total (0 if unknown); false cancels. May
    /// send other requests meanwhile.
    using Tick = std::function<bool(std::uint64_t done, std::uint64_t total)>;

    Connection();
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// The longest time without a byte.
    void patience(std::chrono::milliseconds time) { m_patience = time; }

    [[nodiscard]] Answer run(const Request& request, const DigestLogin& login, const Tick& tick);

private:
    class Handle;
    /// Lets all requests in progress continue, and waits until there is something to do.
    void work(const Exchange& exchange);

    Certificate m_certificate; ///< Outlives the connections, which write to it.
    std::unique_ptr<void, void (*)(void*)> m_all;
    std::vector<std::unique_ptr<void, void (*)(void*)>> m_free; ///< With their authentication state.
    std::chrono::milliseconds m_patience{60000};
};

} // namespace Vs::Network
