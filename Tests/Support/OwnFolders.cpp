#include "Tests/Support/OwnFolders.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <string>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace TestSupport {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPrefix = "quillet-run-";

/// The locked folder, until it is closed or the process ends; -1 if another process has it or it is gone.
int locked(const fs::path& folder)
{
    const int lock = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (lock >= 0 && flock(lock, LOCK_EX | LOCK_NB) == 0 && fs::exists(folder))
        return lock;
    close(lock);
    return -1;
}

void removeStale(const fs::path& temporary)
{
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(temporary, ignored)) {
        if (!entry.path().filename().string().starts_with(kPrefix))
            continue;
        if (const int lock = locked(entry.path()); lock >= 0) {
            fs::remove_all(entry.path(), ignored);
            close(lock);
        }
    }
}

/// All variables of the environment whose names begin with this.
std::vector<std::string> variables(const std::string& prefix)
{
    std::vector<std::string> names;
    for (char** entry = environ; *entry; ++entry)
        if (const std::string text = *entry; text.starts_with(prefix))
            names.push_back(text.substr(0, text.find('=')));
    return names;
}

} // namespace

OwnFolders::OwnFolders()
{
    const fs::path temporary = fs::temp_directory_path();
    removeStale(temporary);
    // Another process may take the new folder for a stale one before it is locked.
    while (m_lock < 0) {
        std::string made = (temporary / kPrefix).string() + "XXXXXX";
        if (!mkdtemp(made.data()))
            throw std::system_error(errno, std::generic_category(), temporary.string());
        m_path = made;
        m_lock = locked(m_path);
    }
    // Its folders are closed where they have to be; other users, whom some tests act as, get past it.
    fs::permissions(m_path, fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_exec);
}

OwnFolders::~OwnFolders()
{
    std::error_code error;
    fs::remove_all(m_path, error);
    if (error)
        std::cerr << m_path.string() << " cannot be removed: " << error.message() << '\n';
    close(m_lock);
}

void OwnFolders::enter() const
{
    static constexpr std::array<std::array<const char*, 2>, 7> kFolders{{{"TMPDIR", "tmp"},
                                                                         {"HOME", "home"},
                                                                         {"XDG_CONFIG_HOME", "config"},
                                                                         {"XDG_CACHE_HOME", "cache"},
                                                                         {"XDG_DATA_HOME", "data"},
                                                                         {"XDG_STATE_HOME", "state"},
                                                                         {"XDG_RUNTIME_DIR", "runtime"}}};
    // The key to the display lies in the old home, unless a variable says otherwise.
    if (const char* home = std::getenv("HOME"))
        setenv("XAUTHORITY", (std::string(home) + "/.Xauthority").c_str(), 0);
    for (const char* prefix : {"XDG_", "LC_", "LANG", "WAYLAND_DISPLAY"})
        for (const std::string& name : variables(prefix))
            unsetenv(name.c_str());
    for (const auto& [variable, name] : kFolders) {
        const fs::path folder = m_path / name;
        fs::create_directory(folder);
        // As a machine has them: what is temporary is everybody's, for the tests of what other users may do.
        const bool temporary = std::strcmp(variable, "TMPDIR") == 0;
        fs::permissions(folder, temporary ? fs::perms::all | fs::perms::sticky_bit : fs::perms::owner_all);
        setenv(variable, folder.c_str(), 1);
    }
}

} // namespace TestSupport
