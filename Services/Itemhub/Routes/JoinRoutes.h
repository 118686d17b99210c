#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// The target of an invitation: a form for the name and password of a new account.
[[nodiscard]] Http::Response showJoin(Call& call);
/// The submitted form.
[[nodiscard]] Http::Response takeJoin(Call& call);

} // namespace Itemhub::Routes
