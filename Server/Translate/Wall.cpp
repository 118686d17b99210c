#include "Server/Translate/Wall.h"

#include "Server/Base/Descriptor.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <linux/landlock.h>
#include <poll.h>
#include <sched.h>
#include <seccomp.h>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

extern char** environ;

namespace Vs::Translate {

namespace {

// Newer than the headers of some systems that this is built on.
constexpr uint64_t kTruncate = 1 << 14;
constexpr uint64_t kDeviceControl = 1 << 15;
constexpr unsigned long kNameMemory = 0x53564d41; // PR_SET_VMA

constexpr uint64_t kRead = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr uint64_t kOfFiles = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | kTruncate;

/// All rights that the running kernel can refuse; none if it doesn't support that.
uint64_t refusableRights()
{
    const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    uint64_t rights = version < 1 ? 0 : (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;
    if (version >= 2)
        rights |= LANDLOCK_ACCESS_FS_REFER;
    if (version >= 3)
        rights |= kTruncate;
    if (version >= 5)
        rights |= kDeviceControl;
    return rights;
}

/// The rules for which files may be used, to be filled and then enforced.
class FileRules
{
public:
    FileRules() : m_refusable(refusableRights()), m_rules(create(m_refusable)) {}

    /// What doesn't exist is left out.
    void allow(const std::string& path, uint64_t rights)
    {
        const Descriptor place(open(path.c_str(), O_PATH | O_CLOEXEC));
        if (!m_rules || !place)
            return;
        std::error_code ignored;
        if (!std::filesystem::is_directory(path, ignored))
            rights &= kOfFiles;
        const landlock_path_beneath_attr rule{rights & m_refusable, place.get()};
        syscall(SYS_landlock_add_rule, m_rules.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
    }
    bool enforce() const { return m_rules && syscall(SYS_landlock_restrict_self, m_rules.get(), 0) == 0; }

private:
    static Descriptor create(uint64_t rights)
    {
        if (rights == 0)
            return Descriptor();
        landlock_ruleset_attr attributes{};
        attributes.handled_access_fs = rights;
        return Descriptor(
            static_cast<int>(syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    }

    uint64_t m_refusable;
    Descriptor m_rules;
};

// What libraries look at by themselves: other libraries, the time zone, the number of processors.
constexpr const char* kOfTheSystem[] = {"/usr",           "/lib",
                                        "/lib64",         "/etc/ld.so.cache",
                                        "/etc/localtime", "/sys/devices/system/cpu",
                                        "/proc/self",     "/proc/meminfo",
                                        "/dev/null"};

/// The program's own libraries, and what the geometry kernel's environment variables name.
std::vector<std::string> ownPlaces()
{
    std::error_code ignored;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", ignored);
    std::vector<std::string> places{program.parent_path().parent_path() / "lib"};
    for (char** variable = environ; *variable; ++variable) {
        const std::string_view entry = *variable;
        const size_t value = entry.find('=') + 1;
        if ((entry.starts_with("CSF_") || entry.starts_with("CASROOT=")) &&
            entry.substr(value).starts_with('/'))
            places.emplace_back(entry.substr(value));
    }
    return places;
}

bool shutFiles(const Wall& wall)
{
    FileRules rules;
    for (const char* place : kOfTheSystem)
        rules.allow(place, kRead);
    for (const std::string& place : ownPlaces())
        rules.allow(place, kRead);
    for (const std::string& place : wall.readable)
        rules.allow(place, kRead);
    if (!wall.writable.empty())
        rules.allow(wall.writable, kOfFiles);
    if (!wall.folder.empty())
        rules.allow(wall.folder, kRead | LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_MAKE_REG |
                                     LANDLOCK_ACCESS_FS_REMOVE_FILE | kTruncate);
    return rules.enforce();
}

// clang-format off
// What reading, computing in several threads and writing consist of.
constexpr int kAllowed[] = {
    // memory
    SCMP_SYS(brk), SCMP_SYS(madvise), SCMP_SYS(memfd_create), SCMP_SYS(mincore), SCMP_SYS(mmap), SCMP_SYS(mmap2), SCMP_SYS(mprotect),
    SCMP_SYS(mremap), SCMP_SYS(msync), SCMP_SYS(munmap),
    // files; which ones is decided by the other part of the wall
    SCMP_SYS(_llseek), SCMP_SYS(access), SCMP_SYS(close), SCMP_SYS(dup), SCMP_SYS(dup2), SCMP_SYS(dup3),
    SCMP_SYS(faccessat), SCMP_SYS(faccessat2), SCMP_SYS(fadvise64), SCMP_SYS(fallocate), SCMP_SYS(fdatasync),
    SCMP_SYS(fstat), SCMP_SYS(fstat64), SCMP_SYS(fstatfs), SCMP_SYS(fsync), SCMP_SYS(ftruncate),
    SCMP_SYS(getcwd), SCMP_SYS(getdents), SCMP_SYS(getdents64), SCMP_SYS(lseek), SCMP_SYS(lstat),
    SCMP_SYS(newfstatat), SCMP_SYS(open), SCMP_SYS(openat), SCMP_SYS(poll), SCMP_SYS(ppoll), SCMP_SYS(pread64),
    SCMP_SYS(preadv), SCMP_SYS(pwrite64), SCMP_SYS(pwritev), SCMP_SYS(read), SCMP_SYS(readlink),
    SCMP_SYS(readlinkat), SCMP_SYS(readv), SCMP_SYS(stat), SCMP_SYS(statfs), SCMP_SYS(statx), SCMP_SYS(write),
    SCMP_SYS(writev),
    // threads and their signals
    SCMP_SYS(arch_prctl), SCMP_SYS(exit), SCMP_SYS(exit_group), SCMP_SYS(futex), SCMP_SYS(get_robust_list),
    SCMP_SYS(getcpu), SCMP_SYS(getpid), SCMP_SYS(getppid), SCMP_SYS(gettid), SCMP_SYS(membarrier),
    SCMP_SYS(restart_syscall), SCMP_SYS(rseq), SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(rt_sigreturn), SCMP_SYS(sched_getaffinity), SCMP_SYS(sched_getparam), SCMP_SYS(sched_getscheduler),
    SCMP_SYS(sched_yield), SCMP_SYS(set_robust_list), SCMP_SYS(set_tid_address), SCMP_SYS(sigaltstack),
    // the time, and what the process is and has
    SCMP_SYS(clock_getres), SCMP_SYS(clock_gettime), SCMP_SYS(clock_nanosleep), SCMP_SYS(getegid),
    SCMP_SYS(geteuid), SCMP_SYS(getgid), SCMP_SYS(getrandom), SCMP_SYS(getrlimit), SCMP_SYS(getrusage),
    SCMP_SYS(gettimeofday), SCMP_SYS(getuid), SCMP_SYS(nanosleep), SCMP_SYS(sysinfo), SCMP_SYS(time),
    SCMP_SYS(times), SCMP_SYS(uname),
};

// Allowed if all arguments have these values.
struct Call
{
    int call;
    std::vector<scmp_arg_cmp> arguments;
};

std::vector<Call> callsByArgument()
{
    const auto is = [](unsigned argument, uint64_t value) { return scmp_arg_cmp{argument, SCMP_CMP_EQ, value, 0}; };
    const auto has = [](unsigned argument, uint64_t bits) { return scmp_arg_cmp{argument, SCMP_CMP_MASKED_EQ, bits, bits}; };
    const auto self = static_cast<uint64_t>(getpid());
    return {
        {SCMP_SYS(clone), {has(0, CLONE_THREAD)}},        // threads, and no processes
        {SCMP_SYS(tgkill), {is(0, self)}},                // signals only to itself: how abort() works
        {SCMP_SYS(sched_setaffinity), {is(0, 0)}},
        {SCMP_SYS(prlimit64), {is(0, 0), is(2, 0)}},      // queries, not changes
        {SCMP_SYS(prlimit64), {is(0, 0), is(1, RLIMIT_AS)}},
        {SCMP_SYS(setrlimit), {is(0, RLIMIT_AS)}},
        {SCMP_SYS(prctl), {is(0, PR_SET_NAME)}},
        {SCMP_SYS(prctl), {is(0, kNameMemory)}},
        {SCMP_SYS(ioctl), {is(1, TCGETS)}},
        {SCMP_SYS(fcntl), {is(1, F_GETFD)}},
        {SCMP_SYS(fcntl), {is(1, F_SETFD)}},
        {SCMP_SYS(fcntl), {is(1, F_GETFL)}},
        {SCMP_SYS(fcntl), {is(1, F_DUPFD_CLOEXEC)}},
    };
}
// clang-format on

// What it takes to start processes, which then raise their own walls.
std::vector<Call> callsOfForking()
{
    const auto is = [](unsigned argument, uint64_t value) {
        return scmp_arg_cmp{argument, SCMP_CMP_EQ, value, 0};
    };
    return {
        {SCMP_SYS(clone), {is(0, CLONE_CHILD_SETTID | CLONE_CHILD_CLEARTID | SIGCHLD)}},
        {SCMP_SYS(wait4), {}},
        {SCMP_SYS(kill), {is(1, SIGKILL)}},
        {SCMP_SYS(tgkill), {}}, // a child's signals to itself
        {SCMP_SYS(prctl), {is(0, PR_SET_PDEATHSIG)}},
        {SCMP_SYS(prctl), {is(0, PR_SET_NO_NEW_PRIVS)}},
        {SCMP_SYS(prctl), {is(0, PR_SET_SECCOMP)}},
        {SCMP_SYS(seccomp), {}},
        {SCMP_SYS(rename), {}}, // what is kept in a folder
        {SCMP_SYS(unlink), {}},
        {SCMP_SYS(utimensat), {}},
        {SCMP_SYS(landlock_create_ruleset), {}},
        {SCMP_SYS(landlock_add_rule), {}},
        {SCMP_SYS(landlock_restrict_self), {}},
    };
}

// A call that isn't allowed fails as on a kernel that doesn't know it: the C library then falls back to older
// calls, and it has one for everything needed here.
bool shutCalls([[maybe_unused]] bool mayFork)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) // they ask for more than we do
    return false;
#endif
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ERRNO(ENOSYS));
    if (!filter)
        return false;
    constexpr uint32_t kAsTree = 2;
    seccomp_attr_set(filter, SCMP_FLTATR_CTL_OPTIMIZE, kAsTree);
    seccomp_attr_set(filter, SCMP_FLTATR_CTL_TSYNC, 1);
    // Some kernels slow down a filtered process so that it can't guess others' secrets inside it. Here there
    // are none.
    seccomp_attr_set(filter, SCMP_FLTATR_CTL_SSB, 1);
    for (const int call : kAllowed)
        seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 0);
    for (const Call& one : callsByArgument())
        seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, one.call, static_cast<unsigned>(one.arguments.size()),
                               one.arguments.data());
    for (const Call& one : mayFork ? callsOfForking() : std::vector<Call>())
        seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, one.call, static_cast<unsigned>(one.arguments.size()),
                               one.arguments.data());
    const bool shut = seccomp_load(filter) == 0;
    seccomp_release(filter);
    return shut;
}

WallParts s_raised;

void limit(decltype(RLIMIT_AS) resource, uint64_t most)
{
    const rlimit both{most, most};
    setrlimit(resource, &both);
}

} // namespace

WallParts raiseWall(const Wall& wall)
{
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    s_raised.files = shutFiles(wall);
    s_raised.calls = shutCalls(wall.mayFork);
    return s_raised;
}

WallParts raisedWall()
{
    return s_raised;
}

void limitFiles(uint64_t written)
{
    limit(RLIMIT_FSIZE, written);
    limit(RLIMIT_CORE, 0);
    // Writing too much then fails like writing to a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
}

void limitMemory([[maybe_unused]] uint64_t memory)
{
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they need more address space than that
    limit(RLIMIT_AS, memory);
#endif
}

void endWithProcess(int parent)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        std::_Exit(3);
}

void endWithParent(int pipe)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have died before that.
    pollfd listener{pipe, 0, 0};
    if (poll(&listener, 1, 0) == 1 && (listener.revents & POLLERR))
        std::_Exit(3);
}

} // namespace Vs::Translate
