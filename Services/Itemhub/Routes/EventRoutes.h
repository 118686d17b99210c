#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// Events behind a serial: at once, after a while of waiting for the first, or as a stream without end, as
/// the client wants.
[[nodiscard]] Http::Response listen(Call& call);

} // namespace Itemhub::Routes
