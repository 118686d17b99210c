#pragma once

#include "Services/Itemhub/Routes/Call.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Itemhub::Routes {

/// Where a route's role is asked for.
enum class Asks {
    Nothing,  ///< Anybody may call it.
    SignedIn, ///< Any account; what it sees is its own, or what its roles show it.
    Anywhere, ///< The role in any workspace.
    Tenant,   ///< The role in all workspaces.
    Path,     ///< The role in the workspace of what the path names.
};

/// What a route takes as its body.
enum class Takes {
    Nothing,
    Json,    ///< One object. With an Idempotency-Key, a repeated request is answered as the first one was.
    Secrets, ///< One object, of which nothing is kept.
    Bytes,   ///< The route reads it itself.
};

/// One row of the table of routes.
struct Route
{
    const char* method;
    const char* pattern; ///< Parts in braces are variable.
    Asks asks;
    Store::Role role; ///< The lowest.
    Takes takes;
    Http::Response (*handle)(Call& call);
};

/// Everything that the service answers to.
[[nodiscard]] const std::vector<Route>& routes();

/// The route of a request. Its path's variable parts go into names. The methods that the path has otherwise
/// go into others.
[[nodiscard]] const Route* findRoute(std::string_view method, const std::string& path,
                                     std::map<std::string, std::string>& names,
                                     std::vector<std::string>& others);

} // namespace Itemhub::Routes
