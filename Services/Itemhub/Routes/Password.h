#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// The account with that name and password, which becomes the caller. Failures are recorded, and too many of
/// them cause a wait.
/// @throws Http::Problem with 401 or 429, neither of which reveals whether the account exists
[[nodiscard]] Store::Account accountOf(Call& call, const QString& customer, const QString& name,
                                       const QString& password);
/// To be called in the transaction that issues a token for it.
void noteSignIn(Call& call, const QString& customer, const Store::Account& account, const QString& label);

} // namespace Itemhub::Routes
