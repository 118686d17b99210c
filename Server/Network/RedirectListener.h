#pragma once

#include <QTcpServer>
#include <QUrl>
#include <QUrlQuery>

#include <chrono>
#include <optional>

namespace Vs::Network {

/// Waits on this machine for the browser to be redirected back from a login page.
class RedirectListener
{
public:
    RedirectListener();

    /// Where to redirect the browser; empty if no port was available.
    QUrl address() const;
    /// Waits that long for one request to that address, and answers it with a page for the user; returns the
    /// query of the address. Other requests are refused.
    std::optional<QUrlQuery> wait(std::chrono::milliseconds time, const QByteArray& state);

private:
    QTcpServer m_server;
};

} // namespace Vs::Network
