#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// Items by the beginnings of words in captions, descriptions and names of attachments, best first.
[[nodiscard]] Http::Response searchItems(Call& call);
/// The newest first.
[[nodiscard]] Http::Response listFavourites(Call& call);
[[nodiscard]] Http::Response addFavourite(Call& call);
[[nodiscard]] Http::Response removeFavourite(Call& call);

} // namespace Itemhub::Routes
