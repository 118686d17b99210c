#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// Signing in by an outside provider (Access/Provider.h), to the dashboard or for a program.

/// Sends the browser there, to sign in.
[[nodiscard]] Http::Response goToProvider(Call& call);
/// The same for a program that asks for what the query says.
[[nodiscard]] Http::Response goToProviderForProgram(Call& call);
/// Tells the page where to go, so that whom the provider knows will stand for the caller's account.
[[nodiscard]] Http::Response linkProvider(Call& call);
[[nodiscard]] Http::Response unlinkProvider(Call& call);
/// Where the browser comes back.
[[nodiscard]] Http::Response backFromProvider(Call& call);

} // namespace Itemhub::Routes
