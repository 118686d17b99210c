#include "Services/Itemhub/Blobs/UploadFiles.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <tuple>

namespace Itemhub::Blobs {

namespace {

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

/// Which byte of the file is locked by the request that writes, and which by the one waiting for it. Such
/// locks belong to the open file description, and work across threads as well as across processes.
enum Turn : off_t { kWriter, kNext };

struct flock rangeOf(Turn turn, short type)
{
    struct flock range
    {
    };
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = turn;
    range.l_len = 1;
    return range;
}

[[nodiscard]] bool take(const Descriptor& file, Turn turn)
{
    struct flock range = rangeOf(turn, F_WRLCK);
    return ::fcntl(file.get(), F_OFD_SETLK, &range) == 0;
}

void give(const Descriptor& file, Turn turn)
{
    struct flock range = rangeOf(turn, F_UNLCK);
    ::fcntl(file.get(), F_OFD_SETLK, &range);
}

/// If several requests want the file, only one waits.
[[nodiscard]] bool takeInTurn(const Descriptor& file)
{
    constexpr std::chrono::milliseconds kLook{20}, kPatience{2000};
    if (take(file, kWriter))
        return true;
    if (!take(file, kNext))
        return false;
    bool taken = false;
    for (std::chrono::milliseconds waited{0}; !taken && waited < kPatience; waited += kLook) {
        std::this_thread::sleep_for(kLook);
        taken = take(file, kWriter);
    }
    give(file, kNext);
    return taken;
}

} // namespace

bool UploadWriter::isWanted() const
{
    struct flock range = rangeOf(kNext, F_WRLCK);
    return ::fcntl(m_file.get(), F_OFD_GETLK, &range) == 0 && range.l_type != F_UNLCK;
}

void UploadWriter::append(std::string_view data)
{
    while (!data.empty()) {
        const ssize_t put = ::pwrite(m_file.get(), data.data(), data.size(), static_cast<off_t>(m_offset));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            fail("Cannot write an upload");
        m_offset += static_cast<uint64_t>(put);
        data.remove_prefix(static_cast<size_t>(put));
    }
}

void UploadWriter::cutBack(uint64_t offset)
{
    if (::ftruncate(m_file.get(), static_cast<off_t>(offset)) != 0)
        fail("Cannot shorten an upload");
    m_offset = offset;
}

void UploadWriter::flush()
{
    if (::fdatasync(m_file.get()) != 0)
        fail("Cannot write an upload");
}

UploadFiles::UploadFiles(std::string folder) : m_folder(std::move(folder))
{
    std::filesystem::create_directories(m_folder);
}

std::string UploadFiles::pathOf(const std::string& id) const
{
    return m_folder + '/' + id;
}

void UploadFiles::make(const std::string& id)
{
    const Descriptor file(::open(pathOf(id).c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600));
    if (!file.isValid())
        fail("Cannot begin an upload");
}

std::optional<UploadWriter> UploadFiles::write(const std::string& id) const
{
    Descriptor file(::open(pathOf(id).c_str(), O_RDWR | O_CLOEXEC));
    if (!file.isValid())
        fail("Cannot find an upload");
    if (!takeInTurn(file))
        return std::nullopt;
    struct stat entry
    {
    };
    if (::fstat(file.get(), &entry) != 0)
        fail("Cannot read an upload");
    return UploadWriter(std::move(file), static_cast<uint64_t>(entry.st_size));
}

void UploadFiles::settle(const std::string& id) const
{
    const Descriptor file(::open(pathOf(id).c_str(), O_RDWR | O_CLOEXEC));
    if (file.isValid())
        std::ignore = takeInTurn(file);
}

int64_t UploadFiles::size(const std::string& id) const
{
    struct stat entry
    {
    };
    return ::stat(pathOf(id).c_str(), &entry) == 0 ? entry.st_size : -1;
}

void UploadFiles::remove(const std::string& id)
{
    ::unlink(pathOf(id).c_str());
}

} // namespace Itemhub::Blobs
