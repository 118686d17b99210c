#pragma once

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Http/Message.h"

namespace Itemhub::Access {

/// Identifies the caller by the request's Authorization header: a bearer token or an OAuth 1.0 signature.
/// Without one, by the dashboard's session cookie.
/// @param base as for signatureBase
/// @throws Http::Problem with 401 if the caller is unknown or the token is no longer valid; with 403 if the
/// request's "customer" names a tenant other than the token's, or a request with a cookie wasn't made by the
/// page
[[nodiscard]] Store::TokenRecord authenticate(Store::Connection& connection, const MasterKey& key,
                                              const Http::Request& request, const QString& base);

/// Issues a token for signed requests in exchange for an old one, even an expired one, and its session
/// handle.
/// @throws Http::Problem
[[nodiscard]] Granted exchange(Store::Connection& connection, const MasterKey& key,
                               const Http::Request& request, const QString& base, qint64 lifetimeMs);

} // namespace Itemhub::Access
