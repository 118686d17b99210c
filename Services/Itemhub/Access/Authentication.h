#pragma once

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Http/Message.h"

namespace Itemhub::Access {

/// Who asks, by the request's Authorization header: a bearer token, or a signature by OAuth 1.0. Without one,
/// by the cookie of the dashboard's session.
/// @param base as for signatureBase
/// @throws Http::Problem with 401 if it's nobody, or the token is no longer good; with 403 if the request's
/// "customer" names another tenant than the token's, or a request with a cookie wasn't made by the page
[[nodiscard]] Store::TokenRecord authenticate(Store::Connection& connection, const MasterKey& key,
                                              const Http::Request& request, const QString& base);

/// Gives a token for signed requests in exchange for an old one and its session handle, also when it has
/// expired.
/// @throws Http::Problem
[[nodiscard]] Granted exchange(Store::Connection& connection, const MasterKey& key,
                               const Http::Request& request, const QString& base, qint64 lifetimeMs);

} // namespace Itemhub::Access
