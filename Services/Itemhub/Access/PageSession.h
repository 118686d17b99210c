#pragma once

#include "Services/Itemhub/Access/Secrets.h"
#include "Services/Itemhub/Http/Message.h"

#include <optional>

namespace Itemhub::Access {

// How a browser stays signed in to the dashboard: a cookie carries a token, which no script sees. Since
// browsers send cookies along with what other pages ask for, a request that has nothing but the cookie may
// only read, and what changes something says besides what only the dashboard's own page is told.

/// How long somebody stays signed in without doing it again.
constexpr qint64 kPageSessionMs = 12LL * 3600 * 1000;

/// The token of the request's cookie; nothing if it has none.
[[nodiscard]] std::optional<QString> pageToken(const Http::Request& request);

/// The header that sets the cookie, and the one that ends it.
/// @param base the service's address as browsers know it; by https, the cookie goes by https alone
[[nodiscard]] std::string pageCookie(const QString& token, const std::string& base);
[[nodiscard]] std::string endedPageCookie(const std::string& base);

/// What the page of a session sends in the header X-CSRF-Token with everything that changes something.
/// @param selector of the session's token
[[nodiscard]] QString pageProof(const MasterKey& key, const QString& selector);

/// @throws Http::Problem with 403 if a browser says that another site's page, or another origin's of this
/// site, made the request
void requireOwnPage(const Http::Request& request);

/// What shows, when a browser comes back from the provider of sign-ins, that it is the one that went there.
/// Unlike the session's, this cookie comes along from another site.
[[nodiscard]] std::string visitCookie(const QString& state, const std::string& base);
[[nodiscard]] QString visitOf(const Http::Request& request);

} // namespace Itemhub::Access
