#pragma once

#include "UI/Application/HandOver.h"

#include <chrono>
#include <optional>
#include <string>
#include <utility>

namespace Quillet::HandOverSocket {

/// How long either side waits for the other.
constexpr std::chrono::milliseconds kPatience{2000};
/// The maximum size of a message; a desktop gives a program no more arguments.
constexpr size_t kLargest = 2UL * 1024 * 1024;
/// What the window answers once it has received everything, and what it waits for before it opens anything: a
/// sender that timed out doesn't send it, and has started a window of its own.
constexpr const char* kTaken = "taken\n";
constexpr const char* kGo = "go\n";

/// A file descriptor that closes itself; -1 for none.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    int get() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }

private:
    int m_number;
};

/// The prefix of the names of this profile's sockets. Windows of other profiles have other files and
/// settings.
[[nodiscard]] std::string prefix();
/// The folder of the sockets; empty if there is none that only this user can write to.
[[nodiscard]] std::string folder(bool create);
/// A system socket, connected or listening; none if that fails, with the cause in `errno`.
[[nodiscard]] Descriptor connectTo(const std::string& path);
[[nodiscard]] Descriptor listenAt(const std::string& path);
/// Whether the peer is a program of this user.
[[nodiscard]] bool isOwn(const Descriptor& connection);

/// The message: a line with its length, then its parts, each terminated by a zero byte.
[[nodiscard]] std::string messageOf(const HandedOver& files);
/// Nothing while it is incomplete. Throws std::runtime_error if it can never be complete.
[[nodiscard]] std::optional<HandedOver> readMessage(const std::string& received);

} // namespace Quillet::HandOverSocket
