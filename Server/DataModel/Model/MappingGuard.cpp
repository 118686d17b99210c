#include "Server/DataModel/Model/MappingGuard.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <mutex>
#include <semaphore>
#include <set>
#include <string>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>

namespace Vs {

/// Waits for the system's questions, in a thread of its own: the one who asks may be this very process.
class MappingGuard::Watch
{
public:
    static Watch& get()
    {
        // Never destroyed: its thread waits until the process ends.
        static auto* const watch = new Watch;
        return *watch;
    }

    bool add(MappingGuard& guard)
    {
        const std::lock_guard lock(m_mutex);
        const f_owner_ex owner{F_OWNER_TID, m_thread};
        if (fcntl(guard.m_descriptor, F_SETOWN_EX, &owner) != 0 ||
            fcntl(guard.m_descriptor, F_SETSIG, signalNumber()) != 0 ||
            fcntl(guard.m_descriptor, F_SETLEASE, F_RDLCK) != 0)
            return false;
        m_guards[guard.m_descriptor] = &guard;
        return true;
    }
    void remove(MappingGuard& guard)
    {
        const std::lock_guard lock(m_mutex);
        m_guards.erase(guard.m_descriptor);
        close(guard.m_descriptor); // The lease goes with it.
    }

private:
    Watch()
    {
        std::binary_semaphore ready(0);
        std::thread([this, &ready] {
            sigset_t signals;
            sigfillset(&signals);
            pthread_sigmask(SIG_BLOCK, &signals, nullptr);
            m_thread = gettid();
            ready.release();
            run();
        }).detach();
        ready.acquire();
    }

    static int signalNumber() { return SIGRTMIN + 5; }

    [[noreturn]] void run()
    {
        sigset_t awaited;
        sigemptyset(&awaited);
        sigaddset(&awaited, signalNumber());
        for (;;) {
            siginfo_t info;
            if (sigwaitinfo(&awaited, &info) < 0)
                continue;
            const std::lock_guard lock(m_mutex);
            const auto found = m_guards.find(info.si_fd);
            if (found == m_guards.end())
                continue;
            found->second->copyAway();
            fcntl(info.si_fd, F_SETLEASE, F_UNLCK);
        }
    }

    std::mutex m_mutex;
    std::map<int, MappingGuard*> m_guards;
    std::atomic<pid_t> m_thread = 0;
};

namespace {

// A file without a name, in the temporary folder or, where that has no room, in memory.
int namelessCopy(int source, size_t size)
{
    std::error_code error;
    const std::string folder = std::filesystem::temp_directory_path(error).string();
    for (const bool onDisk : {true, false}) {
        const int copy = onDisk ? open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600)
                                : memfd_create("quillet-model", MFD_CLOEXEC);
        if (copy < 0)
            continue;
        off_t from = 0;
        while (from < static_cast<off_t>(size)) {
            ssize_t done = copy_file_range(source, &from, copy, nullptr, size - static_cast<size_t>(from), 0);
            if (done < 0 && errno != EINTR && from == 0) {
                char piece[1 << 16];
                while ((done = pread(source, piece, sizeof piece, from)) > 0 &&
                       write(copy, piece, static_cast<size_t>(done)) == done)
                    from += done;
                break;
            }
            if (done == 0 || (done < 0 && errno != EINTR))
                break;
        }
        if (from >= static_cast<off_t>(size))
            return copy;
        close(copy);
    }
    return -1;
}

/// The mappings that are as they were.
class Kept
{
public:
    static Kept& get()
    {
        // Never destroyed, as the guards' thread isn't.
        static auto* const kept = new Kept;
        return *kept;
    }
    void add(const char* data)
    {
        const std::lock_guard lock(m_mutex);
        m_all.insert(data);
    }
    void remove(const char* data)
    {
        const std::lock_guard lock(m_mutex);
        m_all.erase(data);
    }
    bool has(const char* data)
    {
        const std::lock_guard lock(m_mutex);
        return m_all.contains(data);
    }

private:
    std::mutex m_mutex;
    std::set<const char*> m_all;
};

} // namespace

MappingGuard::MappingGuard(int descriptor, const char* data, size_t size) : m_data(data), m_size(size)
{
    Kept::get().add(m_data);
    // A lease belongs to an open file; this one is closed when the lease is to end.
    m_descriptor = open(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), O_RDONLY | O_CLOEXEC);
    if (m_descriptor >= 0 && Watch::get().add(*this))
        return;
    if (m_descriptor >= 0) {
        copyAway();
        close(m_descriptor);
    } else {
        Kept::get().remove(m_data);
    }
    m_descriptor = -1;
}

MappingGuard::~MappingGuard()
{
    Kept::get().remove(m_data);
    if (m_descriptor >= 0)
        Watch::get().remove(*this);
}

bool MappingGuard::keeps(const char* data)
{
    return Kept::get().has(data);
}

// If there is room for no copy the mapping stays as it is, and what gets damaged is seen by its hash.
void MappingGuard::copyAway()
{
    const int copy = namelessCopy(m_descriptor, m_size);
    if (copy < 0) {
        Kept::get().remove(m_data);
        return;
    }
    static_cast<void>(mmap(const_cast<char*>(m_data), m_size, PROT_READ, MAP_PRIVATE | MAP_FIXED, copy, 0));
    close(copy);
}

} // namespace Vs
