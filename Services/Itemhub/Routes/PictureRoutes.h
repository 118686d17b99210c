#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// A version's picture: the one in its package, as PNG.
[[nodiscard]] Http::Response showVersion(Call& call);
/// An item's picture: the newest version of its first attachment that has one.
[[nodiscard]] Http::Response showItem(Call& call);

} // namespace Itemhub::Routes
