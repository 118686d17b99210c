#include "Server/Base/PathInfo.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"

#include <boost/filesystem/operations.hpp>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <dlfcn.h>
#include <filesystem>
#include <locale>
#include <pwd.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace Vs::PathInfo {

namespace fs = boost::filesystem;

namespace {

/// Wide paths are UTF-8 on the disk, whatever locale the process was started in. A name there that isn't
/// UTF-8 keeps its bytes.
class Utf8Paths : public std::codecvt<wchar_t, char, std::mbstate_t>
{
protected:
    bool do_always_noconv() const noexcept override { return false; }
    int do_encoding() const noexcept override { return 0; }
    int do_max_length() const noexcept override { return 4; }
    result do_in(std::mbstate_t&, const char* from, const char* fromEnd, const char*& fromNext, wchar_t* to,
                 wchar_t* toEnd, wchar_t*& toNext) const override
    {
        return hand(Strings::fromBytes({from, static_cast<size_t>(fromEnd - from)}), from, fromEnd, fromNext,
                    to, toEnd, toNext);
    }
    result do_out(std::mbstate_t&, const wchar_t* from, const wchar_t* fromEnd, const wchar_t*& fromNext,
                  char* to, char* toEnd, char*& toNext) const override
    {
        return hand(Strings::toBytes({from, static_cast<size_t>(fromEnd - from)}), from, fromEnd, fromNext,
                    to, toEnd, toNext);
    }
    result do_unshift(std::mbstate_t&, char* to, char*, char*& toNext) const override
    {
        toNext = to;
        return ok;
    }

private:
    template <class Text, class From, class To>
    static result hand(const Text& text, From* from, From* fromEnd, From*& fromNext, To* to, To* toEnd,
                       To*& toNext)
    {
        const bool fits = text.size() <= static_cast<size_t>(toEnd - to);
        fromNext = fits ? fromEnd : from;
        toNext = fits ? std::copy(text.begin(), text.end(), to) : to;
        return fits ? ok : partial;
    }
};

const bool s_imbued = [] {
    const std::locale utf8(std::locale::classic(), new Utf8Paths);
    try {
        fs::path::imbue(utf8);
    } catch (const std::runtime_error&) {
        // Boost makes the environment's locale first, only to replace it, and that fails where the locale
        // isn't installed. The environment is given back before anybody else can ask for it: this runs ahead
        // of main.
        const char* const value = std::getenv("LC_ALL");
        const std::string before = value ? value : "";
        setenv("LC_ALL", "C", 1);
        fs::path::imbue(utf8);
        if (value)
            setenv("LC_ALL", before.c_str(), 1);
        else
            unsetenv("LC_ALL");
    }
    return true;
}();

// Never destroyed: options are written while statics are destroyed.
Path& profile()
{
    static Path& folder = *new Path;
    return folder;
}

Path environmentPath(const char* name)
{
    const char* value = std::getenv(name);
    // Relative values are ignored, as the XDG base directories have it.
    return value && value[0] == '/' ? Path(value) : Path();
}

/// As the system knows it; empty if it doesn't exist. For a user who is meant to have none, it may exist and
/// belong to somebody else.
Path registeredHome()
{
    std::vector<char> buffer(1024);
    struct passwd entry = {};
    struct passwd* found = nullptr;
    while (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE)
        buffer.resize(2 * buffer.size());
    struct stat state = {};
    const bool isHome = found && found->pw_dir && found->pw_dir[0] == '/' &&
                        stat(found->pw_dir, &state) == 0 && S_ISDIR(state.st_mode) &&
                        state.st_uid == getuid();
    return isHome ? Path(found->pw_dir) : Path();
}

/// Empty if there is none.
Path homeDirectory()
{
    const Path home = environmentPath("HOME");
    return home.empty() ? registeredHome() : home;
}

// Never destroyed: options are written while statics are destroyed. Empty until it is asked for.
std::string& processFolder()
{
    static std::string& folder = *new std::string;
    return folder;
}

/// A folder that this process makes and removes at its end.
Path processDirectory()
{
    std::string& folder = processFolder();
    if (folder.empty()) {
        std::string made = (fs::temp_directory_path() / "quillet-XXXXXX").string();
        if (!mkdtemp(made.data()))
            throw Exception("No folder can be made in " + fs::temp_directory_path().string() + ": " +
                            std::strerror(errno) + '.');
        folder = made;
    }
    return folder;
}

/// After all static objects.
__attribute__((destructor)) void removeProcessFolder()
{
    std::error_code ignored;
    if (!processFolder().empty())
        std::filesystem::remove_all(processFolder(), ignored);
}

/// `variable`/quillet, or `~/fallBack`/quillet, or the profile's folder `inProfile`, or that of this process.
Path userDirectory(const char* variable, const char* fallBack, const char* inProfile)
{
    if (!profile().empty())
        return profile() / inProfile;
    if (const Path base = environmentPath(variable); !base.empty())
        return base / "quillet";
    const Path home = homeDirectory();
    return home.empty() ? processDirectory() / inProfile : home / fallBack / "quillet";
}

Path made(const Path& folder)
{
    OwnFiles::makeFolder(folder);
    return folder;
}

Path findRoot()
{
    const Path configured = environmentPath("QUILLET_ROOT");
    if (!configured.empty())
        return configured.lexically_normal();
    Dl_info info{};
    // Any symbol of this library tells where the library lies: <root>/lib.
    if (dladdr(reinterpret_cast<const void*>(&rootDirectory), &info) && info.dli_fname) {
        boost::system::error_code error;
        // With a base, since this function would otherwise ask for the working folder, which may be gone.
        const Path library = fs::canonical(info.dli_fname, "/", error);
        if (!error)
            return library.parent_path().parent_path();
    }
    return fs::current_path();
}

} // namespace

Path absolute(const Path& path)
{
    return path.is_absolute() ? path : fs::absolute(path);
}

Path rootDirectory()
{
    static const Path& root = *new Path(findRoot());
    return root;
}

Path defaultLocalizationDirectory()
{
    return rootDirectory() / "Localization" / "en";
}

Path localizationDirectory(bool fallBack)
{
    Path own = rootDirectory() / "Localization" / StringTable::language();
    // A language that only has catalogues of texts has no files of its own to show.
    if (fallBack && !fs::is_directory(own / "UI"))
        return defaultLocalizationDirectory();
    return own;
}

void profileDirectory(const Path& folder)
{
    profile() = folder.empty() ? folder : PathInfo::absolute(folder).lexically_normal();
}

bool hasHome()
{
    return !profile().empty() || !homeDirectory().empty();
}

Path optionsDirectory()
{
    return made(userDirectory("XDG_CONFIG_HOME", ".config", "options"));
}

Path cacheDirectory()
{
    // Runs with profiles of their own, as those of tests, may share what others have read.
    if (const Path own = environmentPath("QUILLET_CACHE_DIR"); !own.empty())
        return made(own);
    return made(userDirectory("XDG_CACHE_HOME", ".cache", "cache"));
}

Path recoveryDirectory()
{
    const Path state = userDirectory("XDG_STATE_HOME", ".local/state", "recovery");
    return made(profile().empty() ? state / "recovery" : state);
}

Path cloudCacheDirectory()
{
    const Path data = userDirectory("XDG_DATA_HOME", ".local/share", "cloud");
    return profile().empty() ? data / "cloud" : data;
}

Path scriptsDirectory(bool create)
{
    const Path data = userDirectory("XDG_DATA_HOME", ".local/share", "scripts");
    const Path folder = profile().empty() ? data / "scripts" : data;
    return create ? made(folder) : folder;
}

Path temporaryDirectory(bool create)
{
    const Path runtime = environmentPath("XDG_RUNTIME_DIR");
    Path folder = OwnFiles::isOwnFolder(runtime)
                      ? runtime / "quillet"
                      : fs::temp_directory_path() / ("quillet-" + std::to_string(getuid()));
    boost::system::error_code error;
    if (!create && fs::symlink_status(folder, error).type() == fs::file_not_found)
        return folder;
    try {
        OwnFiles::makeFolder(folder);
    } catch (const Exception&) {
        // The name is taken, but not by a folder.
    }
    return OwnFiles::isOwnFolder(folder) ? folder : processDirectory();
}

namespace {

bool isBelow(const Path& file, const Path& folder)
{
    const auto [ofFolder, ofFile] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
    return ofFolder == folder.end();
}

Path named(const Path& path)
{
    return PathInfo::absolute(path).lexically_normal();
}

/// Without links; the file itself need not be there.
Path real(const Path& path)
{
    const Path whole = named(path);
    boost::system::error_code error;
    const Path resolved = fs::weakly_canonical(whole, error);
    return error ? whole : resolved;
}

} // namespace

bool isPathInCloudCache(const Path& path)
{
    return !path.empty() && isBelow(real(path), real(cloudCacheDirectory()));
}

bool isNamedInCloudCache(const Path& path)
{
    if (path.empty())
        return false;
    const Path file = named(path), cache = cloudCacheDirectory();
    return isBelow(file, named(cache)) || isBelow(file, real(cache));
}

} // namespace Vs::PathInfo
