#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// Signing in through an external provider (Access/Provider.h), to the dashboard or for a program.

/// Sends the browser to the provider to sign in.
[[nodiscard]] Http::Response goToProvider(Call& call);
/// The same for a program, whose request is in the query.
[[nodiscard]] Http::Response goToProviderForProgram(Call& call);
/// Tells the page where to go to link the caller's account with one at the provider.
[[nodiscard]] Http::Response linkProvider(Call& call);
[[nodiscard]] Http::Response unlinkProvider(Call& call);
/// Where the browser comes back to.
[[nodiscard]] Http::Response backFromProvider(Call& call);

} // namespace Itemhub::Routes
