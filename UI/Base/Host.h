#pragma once

namespace Vu {

/// Installs what tells the command model of sessions, shells and workspaces. Once is enough. Private to this
/// library.
void installHost();

} // namespace Vu
