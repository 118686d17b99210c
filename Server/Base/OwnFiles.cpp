#include "Server/Base/OwnFiles.h"

#include "Server/Base/Descriptor.h"
#include "Server/Base/Exception.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/SystemCalls.h"
#include "Server/Base/UnfinishedFile.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace Vs::OwnFiles {

namespace fs = boost::filesystem;

namespace {

constexpr mode_t kOwnFolder = 0700;
constexpr mode_t kOthers = 077;

[[noreturn]] void failed(const Path& path, const char* what)
{
    throw Exception(path.string() + " cannot be " + what + ": " + std::strerror(errno));
}

/// About one step of the path. A folder that everybody may write into, but where nobody may touch what
/// belongs to others, counts as nobody's unless it is the last step.
std::string othersMayChangeStep(const Path& step, bool last)
{
    struct stat state = {};
    if (lstat(step.c_str(), &state) != 0)
        return step.string() + ": " + std::strerror(errno);
    if (state.st_uid != getuid() && state.st_uid != 0)
        return step.string() + " belongs to another user";
    if (S_ISLNK(state.st_mode))
        return {};
    const bool shared = S_ISDIR(state.st_mode) && (state.st_mode & S_ISVTX) && !last;
    return (state.st_mode & (S_IWGRP | S_IWOTH)) && !shared ? step.string() + " can be written by others"
                                                            : std::string();
}

std::string othersMayChangeWay(const Path& path)
{
    Path step;
    for (auto part = path.begin(); part != path.end(); ++part) {
        step /= *part;
        if (std::string why = othersMayChangeStep(step, std::next(part) == path.end()); !why.empty())
            return why;
    }
    return {};
}

} // namespace

void makeFolder(const Path& folder)
{
    const Path above = folder.parent_path();
    boost::system::error_code error;
    if (!above.empty() && !fs::is_directory(above, error))
        makeFolder(above);
    if (mkdir(folder.c_str(), kOwnFolder) == 0)
        return;
    const int cause = errno;
    if (!fs::is_directory(folder, error))
        throw Exception("The folder " + folder.string() + " cannot be made: " +
                        (cause == EEXIST ? "what is there is not a folder" : std::strerror(cause)) + '.');
    const Descriptor there(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat state = {};
    // On a read-only medium, or one without permissions, it stays as it is.
    if (there && fstat(there.get(), &state) == 0 && state.st_uid == getuid() && (state.st_mode & kOthers))
        std::ignore = fchmod(there.get(), kOwnFolder);
}

bool isOwnFolder(const Path& folder)
{
    struct stat state = {};
    return !folder.empty() && lstat(folder.c_str(), &state) == 0 && S_ISDIR(state.st_mode) &&
           state.st_uid == getuid() && !(state.st_mode & kOthers);
}

void write(const Path& file, std::string_view content)
{
    // Created for this user alone, under a name that was free.
    std::string scratch = file.string() + ".XXXXXX";
    const Descriptor made(mkostemp(scratch.data(), O_CLOEXEC));
    if (!made)
        failed(file, "written");
    const UnfinishedFile unfinished(scratch);
    if (!writeAll(made.get(), content) || std::rename(scratch.c_str(), file.c_str()) != 0) {
        const int cause = errno;
        unlink(scratch.c_str());
        errno = cause;
        failed(file, "written");
    }
}

std::optional<std::string> read(const Path& file)
{
    const Descriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    struct stat state = {};
    if (!opened || fstat(opened.get(), &state) != 0 || !S_ISREG(state.st_mode) || state.st_uid != getuid())
        return std::nullopt;
    std::string content;
    char buffer[16384];
    for (ssize_t got = 0; (got = ::read(opened.get(), buffer, sizeof buffer)) != 0;) {
        if (got < 0 && errno != EINTR)
            return std::nullopt;
        content.append(buffer, static_cast<size_t>(std::max<ssize_t>(got, 0)));
    }
    return content;
}

std::string othersMayChange(const Path& path)
{
    // Both the path as given, whose links somebody might redirect, and the one that it resolves to.
    const Path given = PathInfo::absolute(path).lexically_normal();
    if (std::string why = othersMayChangeWay(given); !why.empty())
        return why;
    std::error_code error;
    const Path real = std::filesystem::canonical(given.string(), error).string();
    if (error)
        return given.string() + ": " + error.message();
    return real == given ? std::string() : othersMayChangeWay(real);
}

} // namespace Vs::OwnFiles
