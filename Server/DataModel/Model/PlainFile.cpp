#include "Server/DataModel/Model/PlainFile.h"

#include "Server/Base/SystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace Vs {

namespace {

[[noreturn]] void fail()
{
    throw std::runtime_error(std::strerror(errno));
}

} // namespace

PlainFile::PlainFile(const std::string& path)
    : PlainFile(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
{
}

PlainFile::PlainFile(int descriptor) : m_descriptor(descriptor)
{
    if (m_descriptor < 0)
        fail();
    struct stat info;
    const bool known = fstat(m_descriptor, &info) == 0;
    if (known && S_ISREG(info.st_mode)) {
        m_size = static_cast<uint64_t>(info.st_size);
        return;
    }
    const int cause = errno;
    close(m_descriptor);
    throw std::runtime_error(known ? "it isn't an ordinary file" : std::strerror(cause));
}

PlainFile::~PlainFile()
{
    close(m_descriptor);
}

size_t PlainFile::read(void* target, size_t size)
{
    const uint64_t wanted = std::min<uint64_t>(size, m_size - m_given);
    const ssize_t got = persistent([&] { return ::read(m_descriptor, target, wanted); });
    if (got < 0)
        fail();
    m_given += static_cast<uint64_t>(got);
    return static_cast<size_t>(got);
}

int createPrivateFile(const std::string& path)
{
    constexpr mode_t kOwnerAlone = 0600;
    const int descriptor =
        open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, kOwnerAlone);
    if (descriptor < 0)
        fail();
    return descriptor;
}

} // namespace Vs
