#pragma once

#include "Services/Itemhub/Config/Config.h"

namespace Itemhub {

/// Serves until a signal tells it to end. @returns the program's exit code
[[nodiscard]] int serve(const Config& config);

/// Serves one user on this machine, out of one folder. Writes one line of JSON with address, customer and
/// token to the pipe, and ends when nobody has the pipe's other end any more. @returns the program's exit
/// code
[[nodiscard]] int serveLocally(const QString& folder, int pipe);

} // namespace Itemhub
