#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

/// The account of that name and password, which is the caller from then on. What is wrong is noted, and
/// whoever is wrong too often has to wait.
/// @throws Http::Problem with 401 or 429, neither of which tells whether there is such an account
[[nodiscard]] Store::Account accountOf(Call& call, const QString& customer, const QString& name,
                                       const QString& password);
/// To be called in the transaction that grants a token for it.
void noteSignIn(Call& call, const QString& customer, const Store::Account& account, const QString& label);

} // namespace Itemhub::Routes
