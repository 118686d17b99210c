#pragma once

#include <string>
#include <vector>

namespace Quillet {

/// What one start hands over to the window of another: files, as absolute paths in the system's own bytes,
/// links (Vu::ProgramLink), and the desktop's activation token that lets the window come to the front.
struct HandedOver
{
    std::vector<std::string> files;
    std::string activationToken;
};

/// Hands the files over to the window of this user and profile that was active last. Returns whether one
/// accepted them: there may be none that is running, answers within two seconds, and can be trusted (not the
/// socket of another user, for instance); sockets of dead programs are removed. Needs no Qt.
[[nodiscard]] bool handOver(const HandedOver& files);

} // namespace Quillet
