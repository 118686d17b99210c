#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// Items by word prefixes in captions, descriptions and attachment names, best match first.
[[nodiscard]] Http::Response searchItems(Call& call);
/// Newest first.
[[nodiscard]] Http::Response listFavourites(Call& call);
[[nodiscard]] Http::Response addFavourite(Call& call);
[[nodiscard]] Http::Response removeFavourite(Call& call);

} // namespace Itemhub::Routes
