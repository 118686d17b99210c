#include "UI/Application/HandOverSocket.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "UI/Base/Program/ProgramLink.h"

#include <cstring>
#include <exception>
#include <functional>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace Quillet::HandOverSocket {
namespace {

constexpr const char* kMagic = "quillet-files 1 ";
constexpr int kWaiting = 8;

/// False for a path that a socket can't have.
bool setAddress(const std::string& path, sockaddr_un& address)
{
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return true;
}

Vs::Descriptor unixSocket()
{
    return Vs::Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

} // namespace

std::string prefix()
{
    std::string options;
    try {
        options = Vs::PathInfo::optionsDirectory().string();
    } catch (const std::exception& fault) {
        options = fault.what(); // A home that can't be written to; the message names the folder.
    }
    // The standard library's hash is the same in all processes of one build, which is all that is needed.
    const size_t profile = std::hash<std::string>()(options);
    return "window-" + std::to_string(profile) + '-';
}

std::string folder(bool create)
{
    try {
        const std::string found = Vs::PathInfo::temporaryDirectory(create).string();
        return Vs::OwnFiles::isOwnFolder(found) ? found : std::string();
    } catch (const std::exception&) {
        return {};
    }
}

Vs::Descriptor connectTo(const std::string& path)
{
    sockaddr_un address;
    struct stat status;
    // A symbolic link could lead to someone else's program.
    if (!setAddress(path, address) || lstat(path.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode) ||
        status.st_uid != geteuid())
        return Vs::Descriptor();
    Vs::Descriptor made = unixSocket();
    if (!made || connect(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return Vs::Descriptor();
    return made;
}

Vs::Descriptor listenAt(const std::string& path)
{
    sockaddr_un address;
    if (!setAddress(path, address))
        return Vs::Descriptor();
    unlink(path.c_str()); // Left by a dead process with the same id.
    Vs::Descriptor made = unixSocket();
    const mode_t before = umask(0177);
    const bool bound =
        made && bind(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    umask(before);
    return bound && listen(made.get(), kWaiting) == 0 ? std::move(made) : Vs::Descriptor();
}

bool isOwn(const Vs::Descriptor& connection)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(connection.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

std::string messageOf(const HandedOver& files)
{
    std::string parts = files.activationToken + '\0';
    for (const std::string& file : files.files)
        parts += file + '\0';
    return kMagic + std::to_string(parts.size()) + '\n' + parts;
}

std::optional<HandedOver> readMessage(const std::string& received)
{
    const std::string magic = kMagic;
    if (received.compare(0, std::min(magic.size(), received.size()), magic, 0,
                         std::min(magic.size(), received.size())) != 0)
        throw std::runtime_error("not a message of Quillet's");
    const size_t line = received.find('\n');
    if (line == std::string::npos) {
        if (received.size() > magic.size() + 20)
            throw std::runtime_error("a message without a length");
        return std::nullopt;
    }
    const std::string digits = received.substr(magic.size(), line - magic.size());
    if (digits.empty() || digits.size() > 9 || digits.find_first_not_of("0123456789") != std::string::npos ||
        std::stoul(digits) > kLargest)
        throw std::runtime_error("a message of a wrong length");
    const size_t length = std::stoul(digits);
    const std::string parts = received.substr(line + 1);
    if (parts.size() < length)
        return std::nullopt;
    if (parts.size() > length || parts.empty() || parts.back() != '\0')
        throw std::runtime_error("a message of another length than it says");
    HandedOver files;
    bool isToken = true;
    for (size_t at = 0; at < parts.size();) {
        const std::string part = parts.c_str() + at;
        at += part.size() + 1;
        if (isToken)
            files.activationToken = part;
        else if (part.empty() || (part.front() != '/' && !Vu::ProgramLink::isLink(part)))
            throw std::runtime_error("a file without an absolute path");
        else
            files.files.push_back(part);
        isToken = false;
    }
    return files;
}

} // namespace Quillet::HandOverSocket
