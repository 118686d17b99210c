#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// For administrators of all workspaces.
[[nodiscard]] Http::Response listTeams(Call& call);
[[nodiscard]] Http::Response makeTeam(Call& call);
[[nodiscard]] Http::Response changeTeam(Call& call);
[[nodiscard]] Http::Response deleteTeam(Call& call);
[[nodiscard]] Http::Response addToTeam(Call& call);
[[nodiscard]] Http::Response takeFromTeam(Call& call);

// And for those of one.
[[nodiscard]] Http::Response listTeamsOfWorkspace(Call& call);
[[nodiscard]] Http::Response setTeam(Call& call);
[[nodiscard]] Http::Response removeTeam(Call& call);

} // namespace Itemhub::Routes
