#include "Server/DataModel/Recovery/Private/SessionFolder.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Native/FileCalls.h"
#include "Server/Types/Uuid.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace Vs::Recovery {

namespace fs = std::filesystem;
using Native::FileCalls;

namespace {

std::string lockOf(const std::string& folder)
{
    return folder + "/lock";
}

std::string contentOf(const std::string& file)
{
    std::ostringstream content;
    content << std::ifstream(file).rdbuf();
    return content.str();
}

// When the system came up and when the process began, so that another of the same number isn't taken for it.
std::string noteOf(pid_t process)
{
    const std::string state = contentOf("/proc/" + std::to_string(process) + "/stat");
    std::istringstream fields(state.substr(std::min(state.rfind(')') + 1, state.size())));
    std::string field;
    constexpr int kStartTime = 20; // behind the name
    for (int i = 0; i < kStartTime; ++i)
        fields >> field;
    return std::to_string(process) + ' ' + field + ' ' + contentOf("/proc/sys/kernel/random/boot_id");
}

bool livesAsNoted(const std::string& folder)
{
    const std::string note = contentOf(lockOf(folder));
    const long process = std::strtol(note.c_str(), nullptr, 10);
    return process > 0 && noteOf(static_cast<pid_t>(process)) == note;
}

int openLock(const std::string& folder, int flags)
{
    int descriptor;
    do
        descriptor = FileCalls::current().open(lockOf(folder).c_str(),
                                               O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | flags, 0600);
    while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

/// Nothing where files can't be locked.
std::optional<bool> lock(int descriptor)
{
    while (FileCalls::current().lock(descriptor) != 0) {
        if (errno == EWOULDBLOCK)
            return false;
        if (errno != EINTR)
            return std::nullopt;
    }
    return true;
}

// The child of a run that was killed finishes what it writes.
std::optional<bool> lockOnceFinished(int descriptor, const std::string& folder)
{
    using namespace std::chrono;
    constexpr milliseconds kMost{3000}, kStep{20};
    std::optional<bool> locked = lock(descriptor);
    for (auto waited = milliseconds(0); locked == false && waited < kMost && !livesAsNoted(folder);
         waited += kStep) {
        std::this_thread::sleep_for(kStep);
        locked = lock(descriptor);
    }
    return locked;
}

// Another one may have taken it over, and removed it, in the same moment.
bool isStill(int descriptor, const std::string& folder)
{
    struct stat opened = {}, there = {};
    return fstat(descriptor, &opened) == 0 && stat(lockOf(folder).c_str(), &there) == 0 &&
           opened.st_ino == there.st_ino && opened.st_dev == there.st_dev && S_ISREG(there.st_mode);
}

} // namespace

std::unique_ptr<SessionFolder> SessionFolder::create(const std::string& root)
{
    constexpr int kTries = 5;
    for (int tries = 0; tries < kTries; ++tries) {
        const std::string path = root + '/' + Strings::narrow(fromUuid(makeUuid()));
        OwnFiles::makeFolder(path);
        const int descriptor = openLock(path, O_CREAT | O_EXCL);
        if (descriptor < 0 && errno == ENOENT)
            continue; // Taken for an empty one that somebody left behind.
        if (descriptor < 0) {
            const int cause = errno;
            std::error_code ignored;
            fs::remove(path, ignored);
            throw std::runtime_error(std::strerror(cause));
        }
        const std::string note = noteOf(getpid());
        const bool noted = FileCalls::current().write(descriptor, note.data(), note.size()) ==
                           static_cast<ssize_t>(note.size());
        const std::optional<bool> locked = lock(descriptor);
        if (locked == true || (!locked && noted))
            return std::unique_ptr<SessionFolder>(new SessionFolder(path, descriptor));
        FileCalls::current().close(descriptor);
    }
    throw std::runtime_error("no folder can be locked there");
}

std::unique_ptr<SessionFolder> SessionFolder::claim(const std::string& path)
{
    if (!OwnFiles::isOwnFolder(path))
        return nullptr;
    const int descriptor = openLock(path, 0);
    if (descriptor < 0) {
        std::error_code ignored;
        if (errno == ENOENT)
            fs::remove(path, ignored); // Only what is empty goes.
        return nullptr;
    }
    const std::optional<bool> locked = lockOnceFinished(descriptor, path);
    if (locked == false || (!locked && livesAsNoted(path)) || !isStill(descriptor, path)) {
        FileCalls::current().close(descriptor);
        return nullptr;
    }
    return std::unique_ptr<SessionFolder>(new SessionFolder(path, descriptor));
}

SessionFolder::~SessionFolder()
{
    FileCalls::current().close(m_lock);
}

bool SessionFolder::removeIfEmpty()
{
    std::error_code error;
    bool left = false;
    for (const fs::directory_entry& document : fs::directory_iterator(m_path, error)) {
        if (!document.is_directory(error))
            continue;
        // What a run was writing when it died.
        for (const fs::directory_entry& file : fs::directory_iterator(document.path(), error))
            if (file.path().extension() == ".part")
                fs::remove(file.path(), error);
        fs::remove(document.path() / "older", error);
        fs::remove(document.path(), error);
        left = left || fs::exists(document.path(), error);
    }
    if (left)
        return false;
    fs::remove(lockOf(m_path), error);
    fs::remove(m_path, error);
    return true;
}

} // namespace Vs::Recovery
