#include "Server/Translate/MemoryEnd.h"

#include <algorithm>
#include <csignal>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

namespace Vs::Translate {

namespace {

/// As much as a thread's stack and the next piece of a heap take.
constexpr size_t kHardlyAny = 16 << 20;
constexpr size_t kPart = 8;

int s_code = 0, s_descriptor = -1;
std::string_view s_bytes;

void onCrash(int signal)
{
    if (isMemoryShort()) {
        if (s_descriptor >= 0)
            static_cast<void>(!write(s_descriptor, s_bytes.data(), s_bytes.size()));
        _exit(s_code);
    }
    std::signal(signal, SIG_DFL);
    raise(signal);
}

} // namespace

// Called by a signal handler as well.
bool isMemoryShort()
{
    rlimit limit{};
    if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
        return false;
    const size_t size = std::max<size_t>(kHardlyAny, limit.rlim_cur / kPart);
    void* const room = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (room == MAP_FAILED)
        return true;
    munmap(room, size);
    return false;
}

void endWhenMemoryIsShort(int code, int descriptor, std::string_view bytes)
{
    s_code = code;
    s_descriptor = descriptor;
    s_bytes = bytes;
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS})
        std::signal(signal, onCrash);
}

} // namespace Vs::Translate
