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

/// Says who asks by Digest, which needs the server's challenge first; empty otherwise.
struct DigestLogin
{
    QByteArray user, password;
};

/// The connections to a server, which stay open between requests. One thread at a time; all work is done on
/// the thread that waits, so that none of its events is handled meanwhile.
class Connection
{
public:
    /// Some ten times a second, with the bytes done and in all (0 if unknown); false cancels. It may ask
    /// something else meanwhile.
    using Tick = std::function<bool(std::uint64_t done, std::uint64_t total)>;

    Connection();
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Of time without a byte.
    void patience(std::chrono::milliseconds time) { m_patience = time; }

    [[nodiscard]] Answer run(const Request& request, const DigestLogin& login, const Tick& tick);

private:
    class Handle;
    /// Lets all requests that are under way go on, and waits until there is something to do.
    void work(const Exchange& exchange);

    Certificate m_certificate; ///< Outlives the connections, which write to it.
    std::unique_ptr<void, void (*)(void*)> m_all;
    std::vector<std::unique_ptr<void, void (*)(void*)>> m_free; ///< With what they know of logging in.
    std::chrono::milliseconds m_patience{60000};
};

} // namespace Vs::Network
