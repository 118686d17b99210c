#pragma once

#include "Server/Network/Credentials.h"
#include "Server/Network/Result.h"
#include "Server/Network/Watch.h"

#include <QByteArray>
#include <QUrl>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace Vs::Network {

using Header = std::pair<QByteArray, QByteArray>;
using Headers = std::vector<Header>;

/// A part of a local file, which is read while it is sent.
struct FilePart
{
    std::string file; ///< UTF-8.
    qint64 offset = 0;
    qint64 length = 0;
};

/// One request, without authentication.
struct Request
{
    QByteArray method;
    QUrl url;
    Headers headers{};
    QByteArray body{};
    std::optional<FilePart> file{}; ///< Sent instead of `body`.
    /// Takes the pieces of a 2xx response, on the connection's thread; a result other than success ends the
    /// request with that result. Without it, the content is collected.
    std::function<Result(const QByteArray& piece)> sink{};
    /// The connection is cut once that much of the body has been sent, to find out how a server handles that.
    std::optional<qint64> cutAfter{};
    qint64 mostContent = qint64(1) << 20; ///< Limit of the collected content.
    /// Whether the request may be retried if its response was lost: it changes nothing on the server.
    bool isHarmless() const
    {
        return method == "GET" || method == "HEAD" || method == "PROPFIND" || method == "OPTIONS";
    }
};

/// The outcome of a request.
struct Answer
{
    int status = 0; ///< 0 without a complete response; then `failure` says why.
    QByteArray reason{};
    Headers headers{};
    QByteArray content{};
    Result failure{};
    bool wasReset = false; ///< The connection ended before the response did.
    qint64 received = 0;   ///< Bytes of content.

    bool isOk() const { return status >= 200 && status < 300; }
    /// Whether the server may have carried out the request without our knowing.
    bool isLost() const { return status == 0 && failure.state == CloudErrorState::Unreachable; }
    /// Empty if there is no header of this name; the first one if there are several.
    QByteArray header(const char* name) const
    {
        for (const Header& each : headers) {
            if (each.first.compare(name, Qt::CaseInsensitive) == 0)
                return each.second;
        }
        return {};
    }
};

} // namespace Vs::Network
