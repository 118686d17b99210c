#pragma once

#include "Server/Itemhub/ItemhubSignIn.h"
#include "Server/Network/Request.h"

#include <QByteArray>

namespace Vs::Itemhub {

/// The "Authorization" header of a request signed by OAuth 1.0a (HMAC-SHA256), different for each call.
/// `now` is the service's time in seconds since 1970. `handle` is the session handle if the request asks for
/// a new token, otherwise empty.
[[nodiscard]] QByteArray signatureOf(const Network::Request& request, const Access& access, std::int64_t now,
                                     const std::string& handle = {});

} // namespace Vs::Itemhub
