#include "Services/Itemhub/Blobs/BlobStore.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace Itemhub::Blobs {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

void flush(const std::string& path)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isValid() || ::fsync(file.get()) != 0)
        fail("Cannot write " + path);
}

} // namespace

FolderBlobs::FolderBlobs(std::string folder) : m_folder(std::move(folder))
{
    fs::create_directories(m_folder);
}

std::string FolderBlobs::pathOf(const std::string& sha256) const
{
    return m_folder + '/' + sha256.substr(0, 2) + '/' + sha256;
}

void FolderBlobs::put(const std::string& sha256, const std::string& file)
{
    const std::string path = pathOf(sha256), parent = fs::path(path).parent_path();
    if (fs::create_directory(parent))
        flush(m_folder);
    flush(file);
    // Linking is atomic: nobody sees a half-written content.
    if (::link(file.c_str(), path.c_str()) != 0) {
        if (errno != EEXIST)
            fail("Cannot keep a content as " + path);
        // The existing one may be damaged, and this one is intact.
        if (static_cast<uint64_t>(size(sha256)) != fs::file_size(file)) {
            const std::string beside = path + ".new-" + std::to_string(::getpid());
            ::unlink(beside.c_str());
            if (::link(file.c_str(), beside.c_str()) != 0 || ::rename(beside.c_str(), path.c_str()) != 0)
                fail("Cannot replace a damaged content, " + path);
        }
    }
    flush(parent);
}

Descriptor FolderBlobs::open(const std::string& sha256) const
{
    return Descriptor(::open(pathOf(sha256).c_str(), O_RDONLY | O_CLOEXEC));
}

int64_t FolderBlobs::size(const std::string& sha256) const
{
    struct stat entry
    {
    };
    return ::stat(pathOf(sha256).c_str(), &entry) == 0 ? entry.st_size : -1;
}

void FolderBlobs::remove(const std::string& sha256)
{
    ::unlink(pathOf(sha256).c_str());
}

void FolderBlobs::each(const std::function<void(const std::string&, int64_t)>& tell) const
{
    constexpr size_t kHashLength = 64;
    const auto now = fs::file_time_type::clock::now();
    for (const fs::directory_entry& folder : fs::directory_iterator(m_folder)) {
        if (!folder.is_directory())
            continue;
        for (const fs::directory_entry& file : fs::directory_iterator(folder))
            if (const std::string name = file.path().filename(); name.size() == kHashLength)
                tell(name,
                     std::chrono::duration_cast<std::chrono::seconds>(now - file.last_write_time()).count());
    }
}

} // namespace Itemhub::Blobs
