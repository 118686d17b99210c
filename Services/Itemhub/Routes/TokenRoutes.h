#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// Issues a token for name and password.
[[nodiscard]] Http::Response signIn(Call& call);
/// Renews the token of a signed request that presents its session handle.
[[nodiscard]] Http::Response renewToken(Call& call);
[[nodiscard]] Http::Response tellSession(Call& call);
[[nodiscard]] Http::Response listTokens(Call& call);
[[nodiscard]] Http::Response deleteToken(Call& call);

} // namespace Itemhub::Routes
