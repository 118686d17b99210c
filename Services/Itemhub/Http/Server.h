#pragma once

#include "Services/Itemhub/Http/Message.h"

#include <functional>
#include <memory>
#include <string>

namespace Itemhub::Http {

/// An HTTP/1.1 server without TLS, which is left to a proxy. One handler answers all requests, on many
/// threads concurrently.
class Server
{
public:
    using Handler = std::function<Response(Request&)>;

    struct Options
    {
        bool behindProxy = false; ///< Whether the last entry of X-Forwarded-For is trusted.
        size_t mostConnections = 512;
    };

    /// @param handler catches what its routes throw; anything it throws itself becomes status 500
    Server(Handler handler, const Options& options);
    ~Server();

    /// @param port 0 to let the system choose one
    /// @returns the port
    /// @throws std::runtime_error if the address is not available
    int bind(const std::string& address, int port);
    /// Serves until any thread calls stop; then waits for pending responses. After stop it returns at once.
    void run();
    /// Also before run, or while it starts.
    void stop();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace Itemhub::Http
