#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// Events after a serial: at once, by long polling, or as an endless stream, as the client requests.
[[nodiscard]] Http::Response listen(Call& call);

} // namespace Itemhub::Routes
