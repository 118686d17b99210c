#pragma once

#include "Services/Itemhub/Routes/Call.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Itemhub::Routes {

/// Where a route requires its role.
enum class Asks {
    Nothing,  ///< Anybody may call it.
    SignedIn, ///< Any account; it sees only its own things, or what its roles let it see.
    Anywhere, ///< The role in any workspace.
    Tenant,   ///< The role in all workspaces.
    Path,     ///< The role in the workspace of what the path refers to.
};

/// A route's request body.
enum class Takes {
    Nothing,
    Json,    ///< One object. With an Idempotency-Key, a repeated request gets the first one's response.
    Secrets, ///< One object, none of which is stored.
    Bytes,   ///< The route reads it itself.
};

/// One row of the table of routes.
struct Route
{
    const char* method;
    const char* pattern; ///< Parts in braces are variable.
    Asks asks;
    Store::Role role; ///< The lowest one required.
    Takes takes;
    Http::Response (*handle)(Call& call);
};

/// Everything that the service responds to.
[[nodiscard]] const std::vector<Route>& routes();

/// The route of a request. Stores the path's variable parts in names, and the methods that the path does
/// support in others.
[[nodiscard]] const Route* findRoute(std::string_view method, const std::string& path,
                                     std::map<std::string, std::string>& names,
                                     std::vector<std::string>& others);

} // namespace Itemhub::Routes
