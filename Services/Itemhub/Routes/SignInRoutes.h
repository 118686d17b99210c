#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// A program lets its user sign in through a browser, so that it never sees the password (OAuth 2.0 for native
// apps, RFC 8252, with PKCE, RFC 7636): it opens the page, the browser is redirected with a code to the
// program's own address on the same machine, and the program exchanges the code for a token.

/// Where page and tokens are (RFC 8414).
[[nodiscard]] Http::Response describeSignIn(Call& call);
/// The page. @throws Http::Problem with 400 if the address to redirect to is not on the browser's machine
[[nodiscard]] Http::Response showSignIn(Call& call);
/// The submitted form: redirects to the program with a code, or back to the page.
[[nodiscard]] Http::Response takeSignIn(Call& call);
/// Exchanges a code for a token.
[[nodiscard]] Http::Response changeCode(Call& call);

} // namespace Itemhub::Routes
