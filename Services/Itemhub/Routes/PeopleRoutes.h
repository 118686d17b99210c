#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// What administrators do with people: of a customer, and of a workspace.

[[nodiscard]] Http::Response listAccounts(Call& call);
[[nodiscard]] Http::Response changeAccount(Call& call);
[[nodiscard]] Http::Response listAudit(Call& call);
[[nodiscard]] Http::Response listInvitations(Call& call);
[[nodiscard]] Http::Response makeInvitation(Call& call);
[[nodiscard]] Http::Response deleteInvitation(Call& call);

} // namespace Itemhub::Routes
