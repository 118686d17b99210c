#pragma once

#include "Server/Skyvault/Client/Http/Exchange.h"

#include <QThread>

#include <functional>
#include <memory>

namespace Vs::Cloud {

/// The thread on which a drive's requests run, with the sockets that stay open between them. Whoever asks
/// waits beside it, so that he needs no event loop and none of his events is handled meanwhile.
class Connection
{
public:
    Connection();
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Of time without a byte.
    void patience(std::chrono::milliseconds time) { m_patience = time; }

    /// Waits for the answer. `tick` is called some ten times a second on this thread; false cancels.
    Answer run(const Request& request, const DigestLogin& login,
               const std::function<bool(std::uint64_t done, std::uint64_t total)>& tick);

private:
    QThread m_thread;
    QNetworkAccessManager* m_manager = nullptr;
    std::chrono::milliseconds m_patience{60000};
};

} // namespace Vs::Cloud
