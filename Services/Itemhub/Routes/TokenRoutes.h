#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// A token for a name and a password.
[[nodiscard]] Http::Response signIn(Call& call);
/// Another token for a signed request that shows its session handle.
[[nodiscard]] Http::Response renewToken(Call& call);
[[nodiscard]] Http::Response tellSession(Call& call);
[[nodiscard]] Http::Response listTokens(Call& call);
[[nodiscard]] Http::Response deleteToken(Call& call);

} // namespace Itemhub::Routes
