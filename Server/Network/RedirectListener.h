#pragma once

#include <QTcpServer>
#include <QUrl>
#include <QUrlQuery>

#include <chrono>
#include <optional>

namespace Vs::Network {

/// Waits on this machine for the browser that comes back from a login page.
class RedirectListener
{
public:
    RedirectListener();

    /// Where the browser is to come; empty if no port could be had.
    QUrl address() const;
    /// Waits so long for one request to that address, and answers it with a page for the person; what the
    /// address was asked with. Other requests are refused.
    std::optional<QUrlQuery> wait(std::chrono::milliseconds time, const QByteArray& state);

private:
    QTcpServer m_server;
};

} // namespace Vs::Network
