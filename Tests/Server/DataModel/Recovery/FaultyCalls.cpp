#include "Tests/Server/DataModel/Recovery/FaultyCalls.h"

#include <cerrno>
#include <csignal>
#include <new>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

FaultyCalls::FaultyCalls() : m_main(getpid())
{
    void* shared = mmap(nullptr, sizeof *m_count, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    m_count = new (shared) std::atomic<int>(0);
}

void FaultyCalls::arm(Kind kind, int at)
{
    m_kind = kind;
    m_at = at;
    m_count->store(0);
}

bool FaultyCalls::fails()
{
    const int number = m_count->fetch_add(1);
    if (m_kind == Kind::Kill && number == m_at)
        kill(getpid(), SIGKILL);
    if (m_kind == Kind::PowerLoss && number == m_at)
        losePower();
    errno = m_kind == Kind::Shorter ? EINTR : code;
    return (m_kind == Kind::Error && number == m_at) || (m_kind == Kind::Shorter && number % 2 == 1);
}

void FaultyCalls::losePower() const
{
    if (getpid() != m_main)
        kill(m_main, SIGKILL);
    m_disk.value().lose(seed);
    kill(getpid(), SIGKILL);
    _exit(1);
}

size_t FaultyCalls::shortened(size_t size) const
{
    return m_kind == Kind::Shorter ? (size + 1) / 2 : size;
}

int FaultyCalls::open(const char* path, int flags, mode_t mode)
{
    if (fails())
        return -1;
    struct stat state = {};
    const bool existed = lstat(path, &state) == 0;
    const int descriptor = FileCalls::open(path, flags, mode);
    if (m_disk && descriptor >= 0)
        m_disk->opened(path, existed);
    return descriptor;
}

ssize_t FaultyCalls::write(int descriptor, const void* data, size_t size)
{
    if (fails())
        return -1;
    if (m_kind == Kind::Garble && size > 0) {
        std::string other(static_cast<const char*>(data), size);
        other[size / 2] = static_cast<char>(other[size / 2] ^ 1);
        return FileCalls::write(descriptor, other.data(), size);
    }
    return FileCalls::write(descriptor, data, shortened(size));
}

ssize_t FaultyCalls::writeAt(int descriptor, const void* data, size_t size, off_t place)
{
    return fails() ? -1 : FileCalls::writeAt(descriptor, data, shortened(size), place);
}

ssize_t FaultyCalls::copy(int from, off_t* place, int to, size_t size)
{
    return fails() ? -1 : FileCalls::copy(from, place, to, shortened(size));
}

int FaultyCalls::lock(int descriptor)
{
    return fails() ? -1 : FileCalls::lock(descriptor);
}

int FaultyCalls::rights(int descriptor, mode_t mode)
{
    return fails() ? -1 : FileCalls::rights(descriptor, mode);
}

int FaultyCalls::flush(int descriptor)
{
    if (fails())
        return -1;
    const int result = FileCalls::flush(descriptor);
    if (m_disk && result == 0)
        m_disk->flushed(descriptor);
    return result;
}

int FaultyCalls::close(int descriptor)
{
    const int result = FileCalls::close(descriptor);
    return fails() ? -1 : result;
}

int FaultyCalls::rename(const char* from, const char* to)
{
    if (fails())
        return -1;
    if (m_disk)
        m_disk->renaming(from, to);
    return FileCalls::rename(from, to);
}

int FaultyCalls::remove(const char* path)
{
    if (fails())
        return -1;
    if (m_disk)
        m_disk->removing(path);
    return FileCalls::remove(path);
}
