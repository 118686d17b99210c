#include "Server/DataModel/Recovery/Private/SessionFolder.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/Strings.h"
#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Native/FileCalls.h"
#include "Server/DataModel/Native/Paths.h"
#include "Server/DataModel/Recovery/Private/FolderCalls.h"
#include "Server/DataModel/Recovery/Private/StepJournal.h"
#include "Server/Types/Uuid.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

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
    // Of a longer one that stood there before, the end may be left.
    return process > 0 && note.starts_with(noteOf(static_cast<pid_t>(process)));
}

/// Says in the lock that this process has it.
bool note(int descriptor)
{
    const std::string text = noteOf(getpid());
    return FileCalls::current().writeAt(descriptor, text.data(), text.size(), 0) ==
           static_cast<ssize_t>(text.size());
}

int openLock(const std::string& folder, int flags)
{
    return persistent([&] {
        return FileCalls::current().open(lockOf(folder).c_str(),
                                         O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | flags, 0600);
    });
}

/// Nothing where files can't be locked.
std::optional<bool> lock(int descriptor)
{
    if (persistent([&] { return FileCalls::current().lock(descriptor); }) == 0)
        return true;
    return errno == EWOULDBLOCK ? std::optional(false) : std::nullopt;
}

bool hasFiles(const std::string& document)
{
    std::error_code error;
    for (const fs::directory_entry& file : fs::directory_iterator(document, error))
        if (file.path().extension() == ".backup")
            return true;
    return false;
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
        const bool noted = note(descriptor);
        const std::optional<bool> locked = lock(descriptor);
        if (locked == true || (!locked && noted))
            return std::unique_ptr<SessionFolder>(new SessionFolder(path, descriptor));
        FileCalls::current().close(descriptor);
    }
    throw std::runtime_error("no folder can be locked there");
}

SessionFolder::Claim SessionFolder::claim(const std::string& path)
{
    if (!OwnFiles::isOwnFolder(path))
        return {};
    int descriptor = openLock(path, 0);
    // An empty one is what is left of a run that was just beginning or ending. Where there is more, only the
    // lock was lost, and what was kept is still there.
    if (descriptor < 0 && errno == ENOENT && !FolderCalls::remove(path))
        descriptor = openLock(path, O_CREAT);
    if (descriptor < 0)
        return {};
    const std::optional<bool> locked = lock(descriptor);
    // Another one may have taken it over, and removed it, in the same moment.
    if (locked == false || (!locked && livesAsNoted(path)) || !Native::isStillAt(descriptor, lockOf(path))) {
        FileCalls::current().close(descriptor);
        return {nullptr, locked == false && !livesAsNoted(path)};
    }
    // Others mustn't take the lock for that of a dead run's child, and wait for it. Where files can't be
    // locked the note is all there is.
    if (!note(descriptor) && !locked) {
        FileCalls::current().close(descriptor);
        return {};
    }
    return {std::unique_ptr<SessionFolder>(new SessionFolder(path, descriptor)), false};
}

SessionFolder::~SessionFolder()
{
    FileCalls::current().close(m_lock);
}

bool SessionFolder::isThere() const
{
    return Native::isStillAt(m_lock, lockOf(m_path));
}

bool SessionFolder::removeIfEmpty()
{
    std::error_code error;
    bool left = false;
    std::vector<std::string> documents;
    for (const fs::directory_entry& document : fs::directory_iterator(m_path, error))
        if (document.is_directory(error))
            documents.push_back(document.path().string());
    for (const std::string& document : documents) {
        // What a run was writing when it died, and steps behind a file that is gone.
        const bool steps = FolderCalls::remove(document + "/older") && !hasFiles(document);
        for (const fs::directory_entry& file : fs::directory_iterator(document, error))
            if (file.path().extension() == ".part" ||
                (steps && StepJournal::isJournal(file.path().filename().string())))
                FolderCalls::remove(file.path().string());
        left = !FolderCalls::remove(document) || left;
    }
    if (left)
        return false;
    FolderCalls::remove(lockOf(m_path));
    FolderCalls::remove(m_path);
    return true;
}

} // namespace Vs::Recovery
