#include "UI/Application/HandOver.h"

#include "UI/Application/HandOverSocket.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillet {
namespace {

using namespace HandOverSocket;
using Clock = std::chrono::steady_clock;

/// Waits until the connection is ready; false when the time is up or the peer is gone.
bool waitFor(const Vs::Descriptor& connection, short what, Clock::time_point end)
{
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0)
            return false;
        pollfd one{connection.get(), what, 0};
        const int ready = poll(&one, 1, static_cast<int>(left));
        if (ready > 0)
            return (one.revents & what) != 0;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

bool sendAll(const Vs::Descriptor& connection, std::string_view text, Clock::time_point end)
{
    while (!text.empty()) {
        const ssize_t sent = send(connection.get(), text.data(), text.size(), MSG_NOSIGNAL);
        if (sent > 0)
            text.remove_prefix(static_cast<size_t>(sent));
        else if (sent < 0 && errno == EINTR)
            continue;
        else if ((sent < 0 && errno != EAGAIN) || !waitFor(connection, POLLOUT, end))
            return false;
    }
    return true;
}

bool hears(const Vs::Descriptor& connection, std::string_view answer, Clock::time_point end)
{
    std::string heard;
    while (heard.size() < answer.size()) {
        char buffer[16];
        if (!waitFor(connection, POLLIN, end))
            return false;
        const ssize_t got = recv(connection.get(), buffer, sizeof buffer, 0);
        if (got == 0 || (got < 0 && errno != EINTR && errno != EAGAIN))
            return false;
        if (got > 0)
            heard.append(buffer, static_cast<size_t>(got));
    }
    return heard == answer;
}

/// The sockets of this profile's windows, the most recently active first.
std::vector<std::filesystem::path> sockets()
{
    namespace fs = std::filesystem;
    const std::string where = folder(false);
    std::vector<std::pair<fs::file_time_type, fs::path>> found;
    std::error_code error;
    if (!where.empty())
        for (fs::directory_iterator each(where, error), end; !error && each != end; each.increment(error))
            if (each->path().filename().string().starts_with(prefix())) {
                std::error_code gone;
                found.emplace_back(fs::last_write_time(each->path(), gone), each->path());
            }
    std::sort(found.rbegin(), found.rend());
    std::vector<fs::path> paths;
    for (auto& [time, path] : found)
        paths.push_back(std::move(path));
    return paths;
}

} // namespace

bool handOver(const HandedOver& files)
{
    const Clock::time_point end = Clock::now() + kPatience;
    const std::string message = messageOf(files);
    if (message.size() > kLargest)
        return false;
    for (const std::filesystem::path& path : sockets()) {
        errno = 0;
        const Vs::Descriptor connection = connectTo(path.string());
        if (!connection) {
            if (errno == ECONNREFUSED)
                unlink(path.c_str()); // Its program is dead.
            continue;
        }
        if (isOwn(connection) && sendAll(connection, message, end) && hears(connection, kTaken, end))
            return sendAll(connection, kGo, end);
    }
    return false;
}

} // namespace Quillet
