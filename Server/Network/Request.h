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

/// A part of a local file, which is sent as it is read.
struct FilePart
{
    std::string file; ///< UTF-8.
    qint64 offset = 0;
    qint64 length = 0;
};

/// One request, before anything is known of who asks.
struct Request
{
    QByteArray method;
    QUrl url;
    Headers headers{};
    QByteArray body{};
    std::optional<FilePart> file{}; ///< Sent instead of `body`.
    /// Takes the pieces of an answer of the kind 2xx, on the connection's thread; what it answers other than
    /// success ends the request with that. Without it, the answer's content is collected.
    std::function<Result(const QByteArray& piece)> sink{};
    /// Of the body; when so much is sent, the connection is cut. For trying what a server makes of that.
    std::optional<qint64> cutAfter{};
    qint64 mostContent = qint64(1) << 20; ///< Of what is collected.
    /// Whether the request may be sent once more if its answer was lost: it changes nothing on the server.
    bool isHarmless() const
    {
        return method == "GET" || method == "HEAD" || method == "PROPFIND" || method == "OPTIONS";
    }
};

/// What came of a request.
struct Answer
{
    int status = 0; ///< 0 if there was no whole answer; then `failure` says why.
    QByteArray reason{};
    Headers headers{};
    QByteArray content{};
    Result failure{};
    bool wasReset = false; ///< The connection ended before the answer.
    qint64 received = 0;   ///< Bytes of content.

    bool isOk() const { return status >= 200 && status < 300; }
    /// Whether the server may have done what was asked without our knowing.
    bool isLost() const { return status == 0 && failure.state == CloudErrorState::Unreachable; }
    /// Empty if there is none of this name. Of several, the first.
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
