#include "Server/DataModel/Model/FileMapping.h"

#include "Server/DataModel/Model/MappingGuard.h"

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

struct Descriptor
{
    int number;
    ~Descriptor() { close(number); }
};

std::runtime_error systemError()
{
    return std::runtime_error(std::strerror(errno));
}

int openForReading(const std::string& path)
{
    // A pipe of that name must not make the program wait for ever.
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        throw systemError();
    return descriptor;
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
    return map(openForReading(path), path, false);
}

std::shared_ptr<const FileMapping> FileMapping::openGuarded(const std::string& path)
{
    return map(openForReading(path), path, true);
}

std::shared_ptr<const FileMapping> FileMapping::adopt(int descriptor)
{
    return map(descriptor, {}, false);
}

std::shared_ptr<const FileMapping> FileMapping::map(int descriptor, std::string path, bool guarded)
{
    // Many files may be open at once: a mapping needs no descriptor.
    const Descriptor closer{descriptor};
    std::shared_ptr<FileMapping> mapping(new FileMapping);
    mapping->m_path = std::move(path);
    struct stat info;
    if (fstat(descriptor, &info) != 0)
        throw systemError();
    if (!S_ISREG(info.st_mode))
        throw std::runtime_error("it is no ordinary file");
    mapping->m_identity = identityOf(info);
    if (info.st_size == 0)
        return mapping;
    const auto size = static_cast<size_t>(info.st_size);
    void* data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (data == MAP_FAILED)
        throw systemError();
    mapping->m_data = static_cast<const char*>(data);
    mapping->m_size = size;
    if (guarded)
        mapping->m_guard = std::make_unique<MappingGuard>(descriptor, mapping->m_data, mapping->m_size);
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
    const uintptr_t first = (begin + page - 1) / page * page;
    const uintptr_t last = (begin + stretch.size()) / page * page;
    if (first < last)
        madvise(reinterpret_cast<void*>(first), last - first, MADV_DONTNEED);
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
