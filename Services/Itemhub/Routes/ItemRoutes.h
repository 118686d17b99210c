#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

[[nodiscard]] Http::Response listItems(Call& call);
[[nodiscard]] Http::Response makeItem(Call& call);
[[nodiscard]] Http::Response readItem(Call& call);
/// Takes If-Match, and refuses to change a state that the client hasn't seen.
[[nodiscard]] Http::Response changeItem(Call& call);
[[nodiscard]] Http::Response deleteItem(Call& call);

[[nodiscard]] Http::Response listLinks(Call& call);
[[nodiscard]] Http::Response makeLink(Call& call);
[[nodiscard]] Http::Response deleteLink(Call& call);

[[nodiscard]] Http::Response listComments(Call& call);
[[nodiscard]] Http::Response makeComment(Call& call);
/// For its author or an administrator.
[[nodiscard]] Http::Response deleteComment(Call& call);

} // namespace Itemhub::Routes
