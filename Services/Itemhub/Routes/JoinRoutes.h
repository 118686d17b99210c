#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// What an invitation leads to: a form for the name and the password of a new account.
[[nodiscard]] Http::Response showJoin(Call& call);
/// What was typed there.
[[nodiscard]] Http::Response takeJoin(Call& call);

} // namespace Itemhub::Routes
