#pragma once

#include "Services/Itemhub/Access/Secrets.h"
#include "Services/Itemhub/Http/Message.h"

#include <optional>

namespace Itemhub::Access {

// How a browser stays signed in to the dashboard: a cookie carries a token that scripts can't read. Since
// browsers also send cookies with requests made by other sites' pages, a request with only the cookie may
// only read; one that changes something must also carry a proof that only the dashboard's own page knows.

/// How long somebody stays signed in before having to sign in again.
constexpr qint64 kPageSessionMs = 12LL * 3600 * 1000;

/// The token of the request's cookie; nothing if it has none.
[[nodiscard]] std::optional<QString> pageToken(const Http::Request& request);

/// The header that sets the cookie, and the one that deletes it.
/// @param base the service's address as browsers see it; with https, the cookie is sent over https only
[[nodiscard]] std::string pageCookie(const QString& token, const std::string& base);
[[nodiscard]] std::string endedPageCookie(const std::string& base);

/// What a session's page sends in the X-CSRF-Token header with every request that changes something.
/// @param selector of the session's token
[[nodiscard]] QString pageProof(const MasterKey& key, const QString& selector);

/// @throws Http::Problem with 403 if the browser says that the request was made by a page of another site or
/// of another origin of this site
void requireOwnPage(const Http::Request& request);

/// Proves, when a browser comes back from the sign-in provider, that it is the one that was sent there.
/// Unlike the session's cookie, this one is also sent on requests coming from another site.
[[nodiscard]] std::string visitCookie(const QString& state, const std::string& base);
[[nodiscard]] QString visitOf(const Http::Request& request);

} // namespace Itemhub::Access
