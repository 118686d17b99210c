#pragma once

#include <string>
#include <vector>

namespace Quillet {

/// What one start hands to the window of another: files, as absolute paths in the bytes that the system has
/// for them, links (Vu::ProgramLink), and the desktop's token that lets the window come to the front.
struct HandedOver
{
    std::vector<std::string> files;
    std::string activationToken;
};

/// Hands the files to the window of this user and profile that was active last. Returns whether one took
/// them: none may be running, be able to answer within two seconds, or be trusted (the socket of another
/// user, say); sockets of programs that are gone are removed. Needs no Qt.
[[nodiscard]] bool handOver(const HandedOver& files);

} // namespace Quillet
