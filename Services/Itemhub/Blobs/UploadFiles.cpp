#include "Services/Itemhub/Blobs/UploadFiles.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>

namespace Itemhub::Blobs {

namespace {

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

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
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0)
        return std::nullopt;
    struct stat entry
    {
    };
    if (::fstat(file.get(), &entry) != 0)
        fail("Cannot read an upload");
    return UploadWriter(std::move(file), static_cast<uint64_t>(entry.st_size));
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
