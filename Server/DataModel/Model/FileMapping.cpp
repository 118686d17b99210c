#include "Server/DataModel/Model/FileMapping.h"

#include "Server/DataModel/Model/MappingGuard.h"
#include "Server/DataModel/Model/PlainFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vs {

namespace {

FileIdentity identityOf(const struct stat& info)
{
    return {info.st_dev, info.st_ino, static_cast<uint64_t>(info.st_size),
            info.st_mtim.tv_sec * int64_t(1000000000) + info.st_mtim.tv_nsec};
}

} // namespace

FileIdentity FileIdentity::of(const std::string& path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0 ? identityOf(info) : FileIdentity{};
}

FileIdentity FileIdentity::of(int descriptor)
{
    struct stat info;
    return fstat(descriptor, &info) == 0 ? identityOf(info) : FileIdentity{};
}

std::shared_ptr<const FileMapping> FileMapping::open(const std::string& path)
{
    return map(PlainFile(path), path, false);
}

std::shared_ptr<const FileMapping> FileMapping::openGuarded(const std::string& path)
{
    return map(PlainFile(path), path, true);
}

std::shared_ptr<const FileMapping> FileMapping::adopt(int descriptor)
{
    return map(PlainFile(descriptor), {}, false);
}

// Many files may be open at once: a mapping needs no descriptor.
std::shared_ptr<const FileMapping> FileMapping::map(const PlainFile& file, std::string path, bool guarded)
{
    std::shared_ptr<FileMapping> mapping(new FileMapping);
    mapping->m_path = std::move(path);
    mapping->m_identity = FileIdentity::of(file.descriptor());
    if (file.size() == 0)
        return mapping;
    void* data = mmap(nullptr, file.size(), PROT_READ, MAP_PRIVATE, file.descriptor(), 0);
    if (data == MAP_FAILED)
        throw std::runtime_error(std::strerror(errno));
    mapping->m_data = static_cast<const char*>(data);
    mapping->m_size = file.size();
    if (guarded)
        mapping->m_guard =
            std::make_unique<MappingGuard>(file.descriptor(), mapping->m_data, mapping->m_size);
    return mapping;
}

FileMapping::~FileMapping()
{
    m_guard.reset();
    if (m_data)
        munmap(const_cast<char*>(m_data), m_size);
}

void FileMapping::unneeded(std::string_view stretch) const
{
    static const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const uintptr_t begin = reinterpret_cast<uintptr_t>(stretch.data());
    const size_t ahead = (page - begin % page) % page;
    if (ahead < stretch.size())
        madvise(const_cast<char*>(stretch.data()) + ahead, (stretch.size() - ahead) / page * page,
                MADV_DONTNEED);
}

int FileMapping::reopen() const
{
    if (m_path.empty())
        return -1;
    const int descriptor = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor >= 0 && FileIdentity::of(descriptor) != m_identity) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

} // namespace Vs
