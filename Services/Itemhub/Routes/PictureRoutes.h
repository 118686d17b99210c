#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// What a version looks like: the picture in its package, as PNG.
[[nodiscard]] Http::Response showVersion(Call& call);
/// What an item looks like: the newest version of the first of its attachments that has a picture.
[[nodiscard]] Http::Response showItem(Call& call);

} // namespace Itemhub::Routes
