#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// How administrators manage people: those of a customer, and those of a workspace.

[[nodiscard]] Http::Response listAccounts(Call& call);
[[nodiscard]] Http::Response changeAccount(Call& call);
[[nodiscard]] Http::Response listAudit(Call& call);
[[nodiscard]] Http::Response listInvitations(Call& call);
[[nodiscard]] Http::Response makeInvitation(Call& call);
[[nodiscard]] Http::Response deleteInvitation(Call& call);

} // namespace Itemhub::Routes
