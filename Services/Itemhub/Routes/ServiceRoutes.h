#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

[[nodiscard]] Http::Response describeService(Call& call);
[[nodiscard]] Http::Response tellHealth(Call& call); ///< 503 when the database doesn't respond.
[[nodiscard]] Http::Response describeInterface(Call& call);

} // namespace Itemhub::Routes
