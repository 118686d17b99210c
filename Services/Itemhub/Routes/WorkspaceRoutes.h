#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

[[nodiscard]] Http::Response listWorkspaces(Call& call);
[[nodiscard]] Http::Response makeWorkspace(Call& call);
[[nodiscard]] Http::Response readWorkspace(Call& call);
[[nodiscard]] Http::Response listMembers(Call& call);
[[nodiscard]] Http::Response setMember(Call& call);
[[nodiscard]] Http::Response removeMember(Call& call);

} // namespace Itemhub::Routes
