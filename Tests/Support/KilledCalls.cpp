// Loaded before a program's own libraries: kills its process before one of the calls by which it changes
// files in a folder, or sends to another machine.
//
//     QUILLET_KILL_AT=N         before the Nth such call
//     QUILLET_KILL_BELOW=PATH   the folder

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

void count()
{
    static int calls = 0;
    const int saved = errno;
    const char* const limit = std::getenv("QUILLET_KILL_AT");
    if (limit && __atomic_add_fetch(&calls, 1, __ATOMIC_SEQ_CST) == std::atoi(limit))
        ::kill(::getpid(), SIGKILL);
    errno = saved;
}

void countFor(const char* path)
{
    const char* const folder = std::getenv("QUILLET_KILL_BELOW");
    if (path && folder && std::strncmp(path, folder, std::strlen(folder)) == 0)
        count();
}

void countFor(int descriptor)
{
    char name[40], path[PATH_MAX];
    std::snprintf(name, sizeof name, "/proc/self/fd/%d", descriptor);
    const ssize_t size = ::readlink(name, path, sizeof path - 1);
    if (size <= 0)
        return;
    path[size] = '\0';
    countFor(path);
}

void countForSocket(int socket)
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    if (::getpeername(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
        (address.ss_family == AF_INET || address.ss_family == AF_INET6))
        count();
}

template <class Function>
Function real(const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

ssize_t write(int descriptor, const void* data, size_t size)
{
    countFor(descriptor);
    return real<ssize_t (*)(int, const void*, size_t)>("write")(descriptor, data, size);
}

ssize_t pwrite64(int descriptor, const void* data, size_t size, off64_t offset)
{
    countFor(descriptor);
    return real<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64")(descriptor, data, size, offset);
}

ssize_t pwrite(int descriptor, const void* data, size_t size, off_t offset)
{
    countFor(descriptor);
    return real<ssize_t (*)(int, const void*, size_t, off_t)>("pwrite")(descriptor, data, size, offset);
}

ssize_t copy_file_range(int from, off64_t* place, int to, off64_t* target, size_t size, unsigned flags)
{
    countFor(to);
    using Call = ssize_t (*)(int, off64_t*, int, off64_t*, size_t, unsigned);
    return real<Call>("copy_file_range")(from, place, to, target, size, flags);
}

int fsync(int descriptor)
{
    countFor(descriptor);
    return real<int (*)(int)>("fsync")(descriptor);
}

int fdatasync(int descriptor)
{
    countFor(descriptor);
    return real<int (*)(int)>("fdatasync")(descriptor);
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    countFor(descriptor);
    return real<int (*)(int, off64_t)>("ftruncate64")(descriptor, size);
}

int rename(const char* from, const char* to) noexcept
{
    countFor(to);
    return real<int (*)(const char*, const char*)>("rename")(from, to);
}

int unlink(const char* path) noexcept
{
    countFor(path);
    return real<int (*)(const char*)>("unlink")(path);
}

ssize_t send(int socket, const void* data, size_t size, int flags)
{
    countForSocket(socket);
    return real<ssize_t (*)(int, const void*, size_t, int)>("send")(socket, data, size, flags);
}
}
