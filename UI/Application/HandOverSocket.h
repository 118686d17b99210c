#pragma once

#include "Server/Base/Descriptor.h"
#include "UI/Application/HandOver.h"

#include <chrono>
#include <optional>
#include <string>

namespace Quillet::HandOverSocket {

/// How long either side waits for the other.
constexpr std::chrono::milliseconds kPatience{2000};
/// The maximum size of a message; a desktop gives a program no more arguments.
constexpr size_t kLargest = 2UL * 1024 * 1024;
/// What the window answers once it has received everything, and what it waits for before it opens anything: a
/// sender that timed out doesn't send it, and has started a window of its own.
constexpr const char* kTaken = "taken\n";
constexpr const char* kGo = "go\n";

/// The prefix of the names of this profile's sockets. Windows of other profiles have other files and
/// settings.
[[nodiscard]] std::string prefix();
/// The folder of the sockets; empty if there is none that only this user can write to.
[[nodiscard]] std::string folder(bool create);
/// A system socket, connected or listening; none if that fails, with the cause in `errno`.
[[nodiscard]] Vs::Descriptor connectTo(const std::string& path);
[[nodiscard]] Vs::Descriptor listenAt(const std::string& path);
/// Whether the peer is a program of this user.
[[nodiscard]] bool isOwn(const Vs::Descriptor& connection);

/// The message: a line with its length, then its parts, each terminated by a zero byte.
[[nodiscard]] std::string messageOf(const HandedOver& files);
/// Nothing while it is incomplete. Throws std::runtime_error if it can never be complete.
[[nodiscard]] std::optional<HandedOver> readMessage(const std::string& received);

} // namespace Quillet::HandOverSocket
