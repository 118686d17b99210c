#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// A program has somebody sign in with a browser, so that it never sees the password (OAuth 2.0 for native
// programs, RFC 8252, with PKCE, RFC 7636): it opens the page, the browser comes back to the program's own
// address on the same machine with a code, and the program changes the code for a token.

/// Where page and tokens are (RFC 8414).
[[nodiscard]] Http::Response describeSignIn(Call& call);
/// The page. @throws Http::Problem with 400 if the address that it would go back to is not on the browser's
/// machine
[[nodiscard]] Http::Response showSignIn(Call& call);
/// What was typed there: goes back to the program with a code, or to the page.
[[nodiscard]] Http::Response takeSignIn(Call& call);
/// A token for a code.
[[nodiscard]] Http::Response changeCode(Call& call);

} // namespace Itemhub::Routes
