#pragma once

#include "Services/Itemhub/Config/Config.h"

namespace Itemhub {

/// Serves until a signal ends it. @returns the program's exit code
[[nodiscard]] int serve(const Config& config);

/// Serves one user on this machine, from a single folder. Writes one line of JSON with address, customer and
/// token to the pipe, and ends when nobody holds the pipe's other end any more. @returns the program's exit
/// code
[[nodiscard]] int serveLocally(const QString& folder, int pipe);

} // namespace Itemhub
