// Loaded before the service's own libraries: kills its process at one of the calls by which it changes files
// or sends something, or lets them all fail as on a full disk.
//
//     ITEMHUB_KILL_AT=N       at the Nth such call after the file ITEMHUB_ARMED exists
//     ITEMHUB_DISK_FULL=FILE  while that file exists
//
// It also sets its clock:
//
//     ITEMHUB_AHEAD=SECONDS   which is so much ahead of the system's

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

bool exists(const char* variable)
{
    const char* const path = std::getenv(variable);
    return path && ::access(path, F_OK) == 0;
}

void count()
{
    static int calls = 0;
    const char* const limit = std::getenv("ITEMHUB_KILL_AT");
    if (limit && exists("ITEMHUB_ARMED") &&
        __atomic_add_fetch(&calls, 1, __ATOMIC_SEQ_CST) == std::atoi(limit))
        ::kill(::getpid(), SIGKILL);
}

bool isFull()
{
    if (!exists("ITEMHUB_DISK_FULL"))
        return false;
    errno = ENOSPC;
    return true;
}

template <class Function>
Function real(const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

ssize_t pwrite64(int descriptor, const void* data, size_t size, off64_t offset)
{
    count();
    return isFull() ? -1
                    : real<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64")(descriptor, data, size,
                                                                                       offset);
}

ssize_t pwrite(int descriptor, const void* data, size_t size, off_t offset)
{
    count();
    return isFull()
               ? -1
               : real<ssize_t (*)(int, const void*, size_t, off_t)>("pwrite")(descriptor, data, size, offset);
}

// What is sent: to a database's server, or as an answer.
ssize_t send(int descriptor, const void* data, size_t size, int flags)
{
    count();
    return real<ssize_t (*)(int, const void*, size_t, int)>("send")(descriptor, data, size, flags);
}

int fsync(int descriptor)
{
    count();
    return real<int (*)(int)>("fsync")(descriptor);
}

int fdatasync(int descriptor)
{
    count();
    return real<int (*)(int)>("fdatasync")(descriptor);
}

int link(const char* from, const char* to) noexcept
{
    count();
    return isFull() ? -1 : real<int (*)(const char*, const char*)>("link")(from, to);
}

int unlink(const char* path) noexcept
{
    count();
    return real<int (*)(const char*)>("unlink")(path);
}

int mkdir(const char* path, mode_t mode) noexcept
{
    count();
    return isFull() ? -1 : real<int (*)(const char*, mode_t)>("mkdir")(path, mode);
}
int clock_gettime(clockid_t clock, timespec* time)
{
    const long result = ::syscall(SYS_clock_gettime, clock, time);
    const char* const ahead = std::getenv("ITEMHUB_AHEAD");
    if (ahead && result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE))
        time->tv_sec += std::atol(ahead);
    return static_cast<int>(result);
}

int gettimeofday(timeval* time, void*)
{
    timespec now{};
    const int result = clock_gettime(CLOCK_REALTIME, &now);
    constexpr long kNanosecondsInMicrosecond = 1000;
    *time = {now.tv_sec, now.tv_nsec / kNanosecondsInMicrosecond};
    return result;
}

time_t time(time_t* told)
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (told)
        *told = now.tv_sec;
    return now.tv_sec;
}
}
