#include "Server/Translate/MappedFile.h"

#include "Server/Translate/Reading.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vs::Translate {

namespace {

constexpr size_t kPiece = 64 * 1024;

} // namespace

MappedFile::MappedFile(const std::string& path)
{
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat info;
    void* data = MAP_FAILED;
    if (descriptor >= 0 && fstat(descriptor, &info) == 0 && info.st_size > 0)
        data = mmap(nullptr, static_cast<size_t>(info.st_size), PROT_READ, MAP_PRIVATE, descriptor, 0);
    const int error = errno;
    if (descriptor >= 0)
        close(descriptor);
    if (data == MAP_FAILED)
        throw Unreadable(std::string("can't be read: ") + std::strerror(error));
    m_data = static_cast<const char*>(data);
    m_size = static_cast<size_t>(info.st_size);
}

MappedFile::~MappedFile()
{
    munmap(const_cast<char*>(m_data), m_size);
}

ReportingBuffer::int_type ReportingBuffer::underflow()
{
    if (m_given == m_bytes.size())
        return traits_type::eof();
    m_reporter.progress(double(m_given) / double(m_bytes.size()));
    const size_t size = std::min(kPiece, m_bytes.size() - m_given);
    char* begin = const_cast<char*>(m_bytes.data()) + m_given;
    setg(begin, begin, begin + size);
    m_given += size;
    return traits_type::to_int_type(*begin);
}

} // namespace Vs::Translate
