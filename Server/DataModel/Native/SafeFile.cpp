#include "Server/DataModel/Native/SafeFile.h"

#include "Server/Base/Require.h"
#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Native/Paths.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <linux/limits.h>
#include <stdexcept>
#include <sys/stat.h>
#include <utility>
#include <vector>
#include <xxhash.h>

namespace Vs::Native {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail()
{
    throw std::runtime_error(std::strerror(errno));
}

// Short enough for any folder, however long the file's own name is.
std::string scratchName(const fs::path& target)
{
    const std::string name = target.filename().string();
    char text[64];
    std::snprintf(text, sizeof text, ".quillet-%016llx.part",
                  static_cast<unsigned long long>(XXH3_64bits(name.data(), name.size())));
    return (target.parent_path() / text).string();
}

// Checksums that the system keeps with a file would be wrong for the new content and make the file
// inaccessible.
bool survivesTheContent(const std::string& attribute)
{
    return !attribute.starts_with("security.") || attribute == "security.selinux";
}

} // namespace

SafeFile::SafeFile(const std::string& path, FileCalls& calls) : m_calls(calls), m_target(followedPath(path))
{
    std::error_code error;
    const fs::file_status kind = fs::status(m_target, error);
    if (fs::is_directory(kind))
        throw std::runtime_error("there is a folder of that name");
    if (fs::exists(kind) && !fs::is_regular_file(kind))
        throw std::runtime_error("there is something of that name that is not an ordinary file");
    if (kind.type() == fs::file_type::none && error)
        throw std::runtime_error(error.message());
    if (!fs::is_directory(fs::path(m_target).parent_path(), error))
        throw std::runtime_error("the folder " + fs::path(m_target).parent_path().string() +
                                 " doesn't exist");
    m_scratch = scratchName(m_target);
    openScratch();
    m_unfinished.emplace(m_scratch);
    takeRights();
}

void SafeFile::openScratch()
{
    constexpr int kFlags = O_RDWR | O_CLOEXEC | O_NOFOLLOW;
    constexpr int kTries = 3;
    for (int tries = 0; tries < kTries; ++tries) {
        m_descriptor =
            persistent([&] { return m_calls.open(m_scratch.c_str(), kFlags | O_CREAT | O_EXCL, 0600); });
        if (m_descriptor >= 0) {
            if (isOurs(m_descriptor))
                return;
            break; // Another program took it for a dead one's leftover.
        }
        if (errno != EEXIST)
            fail();
        m_descriptor = persistent([&] { return m_calls.open(m_scratch.c_str(), kFlags, 0); });
        if (m_descriptor < 0 && errno == ENOENT)
            continue;
        if (m_descriptor < 0)
            fail();
        if (!isOurs(m_descriptor))
            break;
        // Nobody holds what a dead program left behind.
        if (m_calls.remove(m_scratch.c_str()) != 0)
            abandon(errno, false);
        m_calls.close(std::exchange(m_descriptor, -1));
    }
    if (m_descriptor >= 0)
        m_calls.close(std::exchange(m_descriptor, -1));
    throw std::runtime_error("it is being saved by another program just now");
}

// Whether the lock could be had, or no locks can be had here at all.
bool SafeFile::isOurs(int descriptor)
{
    if (persistent([&] { return m_calls.lock(descriptor); }) == 0 || errno == ENOLCK || errno == EOPNOTSUPP)
        return true;
    if (errno != EWOULDBLOCK)
        abandon(errno, true);
    return false;
}

void SafeFile::abandon(int cause, bool remove)
{
    m_calls.close(std::exchange(m_descriptor, -1));
    if (remove)
        m_calls.remove(m_scratch.c_str());
    errno = cause;
    fail();
}

// A file that is replaced keeps its permissions and, where allowed, its owner; a new one gets the default
// ones.
void SafeFile::takeRights()
{
    struct stat old;
    mode_t mode = 0;
    if (stat(m_target.c_str(), &old) == 0) {
        // Changing the owner may be refused, and clears some of the permissions; so the permissions come
        // after.
        m_calls.giveTo(m_descriptor, old.st_uid, old.st_gid);
        mode = old.st_mode & 07777;
    } else {
        mode = permissionsOfNewFiles();
    }
    if (persistent([&] { return m_calls.rights(m_descriptor, mode); }) != 0 && errno != EPERM &&
        errno != EOPNOTSUPP)
        abandon(errno, true);
    takeAttributes();
}

// Labels, comments and access lists that somebody gave to the file that is replaced. A file system that has
// none, or keeps one for itself, is no reason not to save. They come after the permissions, which are part of
// an access list.
void SafeFile::takeAttributes()
{
    std::vector<char> names(XATTR_LIST_MAX), value(XATTR_SIZE_MAX);
    const ssize_t size =
        persistent([&] { return m_calls.attributes(m_target.c_str(), names.data(), names.size()); });
    for (ssize_t place = 0; place < size;) {
        const std::string name = &names[static_cast<size_t>(place)];
        place += static_cast<ssize_t>(name.size()) + 1;
        if (!survivesTheContent(name))
            continue;
        const ssize_t length = persistent(
            [&] { return m_calls.attribute(m_target.c_str(), name.c_str(), value.data(), value.size()); });
        if (length >= 0)
            persistent([&] {
                return m_calls.giveAttribute(m_descriptor, name.c_str(), value.data(),
                                             static_cast<size_t>(length));
            });
    }
}

SafeFile::~SafeFile()
{
    if (m_descriptor < 0)
        return;
    m_calls.close(m_descriptor);
    if (!m_inPlace)
        m_calls.remove(m_scratch.c_str());
}

void SafeFile::append(const void* data, size_t size)
{
    const char* at = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t done = persistent([&] { return m_calls.write(m_descriptor, at, size); });
        if (done < 0)
            fail();
        at += done;
        size -= static_cast<size_t>(done);
        m_position += static_cast<uint64_t>(done);
    }
}

void SafeFile::writeAt(uint64_t place, const void* data, size_t size)
{
    const char* at = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t done =
            persistent([&] { return m_calls.writeAt(m_descriptor, at, size, static_cast<off_t>(place)); });
        if (done < 0)
            fail();
        at += done;
        size -= static_cast<size_t>(done);
        place += static_cast<uint64_t>(done);
    }
}

bool SafeFile::copy(int descriptor, uint64_t place, uint64_t size)
{
    constexpr uint64_t kMost = uint64_t(1) << 30;
    off_t from = static_cast<off_t>(place);
    for (uint64_t left = size; left > 0;) {
        const size_t piece = static_cast<size_t>(std::min(left, kMost));
        const ssize_t done = persistent([&] { return m_calls.copy(descriptor, &from, m_descriptor, piece); });
        if (done == 0)
            throw std::runtime_error("the file that it was read from was cut short");
        if (done < 0) {
            const bool unable = errno == EXDEV || errno == EINVAL || errno == EOPNOTSUPP || errno == ENOSYS;
            if (unable && left == size)
                return false;
            fail();
        }
        left -= static_cast<uint64_t>(done);
        m_position += static_cast<uint64_t>(done);
    }
    return true;
}

void SafeFile::commit(const Look& beforeRename)
{
    require(!m_inPlace, "a file is put in its place once");
    if (persistent([&] { return m_calls.flush(m_descriptor); }) != 0)
        fail();
    if (beforeRename)
        beforeRename(m_scratch);
    if (persistent([&] { return m_calls.rename(m_scratch.c_str(), m_target.c_str()); }) != 0)
        fail();
    m_inPlace = true;
    m_unfinished.reset();
    flushFolder();
}

void SafeFile::flushFolder()
{
    const std::string folder = fs::path(m_target).parent_path().string();
    const int descriptor =
        persistent([&] { return m_calls.open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0); });
    // Folders that may be written but not read, and file systems that can't flush one, are accepted as they
    // are.
    if (descriptor < 0 && errno == EACCES)
        return;
    if (descriptor < 0)
        fail();
    const int flushed = persistent([&] { return m_calls.flush(descriptor); });
    const int cause = errno;
    m_calls.close(descriptor);
    errno = cause;
    if (flushed != 0 && errno != EINVAL && errno != EOPNOTSUPP)
        fail();
}

} // namespace Vs::Native
