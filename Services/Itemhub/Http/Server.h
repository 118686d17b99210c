#pragma once

#include "Services/Itemhub/Http/Message.h"

#include <functional>
#include <memory>
#include <string>

namespace Itemhub::Http {

/// A server of HTTP/1.1 without TLS, which a proxy adds. One handler answers all requests, on many threads at
/// once.
class Server
{
public:
    using Handler = std::function<Response(Request&)>;

    struct Options
    {
        bool behindProxy = false; ///< Whether the last entry of X-Forwarded-For is believed.
        size_t mostConnections = 512;
    };

    /// @param handler catches what its routes throw; what it throws itself becomes status 500
    Server(Handler handler, const Options& options);
    ~Server();

    /// @param port 0 for one that the system chooses
    /// @returns the port
    /// @throws std::runtime_error if the address cannot be had
    int bind(const std::string& address, int port);
    /// Serves until stop is called, by any thread; then waits for the answers on their way.
    void run();
    void stop();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace Itemhub::Http
