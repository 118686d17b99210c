#pragma once

#include "Services/Itemhub/Routes/Call.h"

#include <functional>

namespace Itemhub::Routes {

/// The fields of a submitted form; empty if there is none of that name.
using Field = std::function<QString(const char* name)>;

/// @throws Http::Problem with 415 if the request's body isn't a form
[[nodiscard]] Field formOf(Call& call);

} // namespace Itemhub::Routes
