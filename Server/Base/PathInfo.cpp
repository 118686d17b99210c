#include "Server/Base/PathInfo.h"

#include "Server/Base/Exception.h"
#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"

#include <boost/filesystem/operations.hpp>

#include <cstdlib>
#include <cwchar>
#include <dlfcn.h>
#include <locale>
#include <stdexcept>
#include <unistd.h>

namespace Vs::PathInfo {

namespace fs = boost::filesystem;

namespace {

/// Wide paths are UTF-8 on the disk, whatever locale the process was started in.
class Utf8Paths : public std::codecvt<wchar_t, char, std::mbstate_t>
{
protected:
    bool do_always_noconv() const noexcept override { return false; }
    int do_encoding() const noexcept override { return 0; }
    int do_max_length() const noexcept override { return 4; }
    result do_in(std::mbstate_t&, const char* from, const char* fromEnd, const char*& fromNext, wchar_t* to,
                 wchar_t* toEnd, wchar_t*& toNext) const override
    {
        return hand(Strings::widen({from, static_cast<size_t>(fromEnd - from)}), from, fromEnd, fromNext, to,
                    toEnd, toNext);
    }
    result do_out(std::mbstate_t&, const wchar_t* from, const wchar_t* fromEnd, const wchar_t*& fromNext,
                  char* to, char* toEnd, char*& toNext) const override
    {
        return hand(Strings::narrow({from, static_cast<size_t>(fromEnd - from)}), from, fromEnd, fromNext, to,
                    toEnd, toNext);
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

// Never destroyed: options are written while statics go.
Path& profile()
{
    static Path& folder = *new Path;
    return folder;
}

Path environmentPath(const char* name)
{
    const char* value = std::getenv(name);
    // The base directory rules say that relative values are to be passed over.
    return value && value[0] == '/' ? Path(value) : Path();
}

Path homeDirectory()
{
    const Path home = environmentPath("HOME");
    return home.empty() ? fs::temp_directory_path() : home;
}

/// `variable`/quillet, or `~/fallBack`/quillet, or the profile's folder `inProfile`.
Path userDirectory(const char* variable, const char* fallBack, const char* inProfile)
{
    if (!profile().empty())
        return profile() / inProfile;
    const Path base = environmentPath(variable);
    return (base.empty() ? homeDirectory() / fallBack : base) / "quillet";
}

Path made(const Path& folder)
{
    boost::system::error_code error;
    fs::create_directories(folder, error);
    if (error && !fs::is_directory(folder))
        throw Exception("The folder " + folder.string() + " cannot be made: " + error.message() + '.');
    return folder;
}

Path findRoot()
{
    const Path configured = environmentPath("QUILLET_ROOT");
    if (!configured.empty())
        return configured.lexically_normal();
    Dl_info info{};
    // Any symbol of this library tells where it lies: <root>/lib.
    if (dladdr(reinterpret_cast<const void*>(&rootDirectory), &info) && info.dli_fname) {
        boost::system::error_code error;
        const Path library = fs::canonical(info.dli_fname, error);
        if (!error)
            return library.parent_path().parent_path();
    }
    return fs::current_path();
}

} // namespace

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
    const Path own = rootDirectory() / "Localization" / StringTable::language();
    // A language that only has catalogues of texts has no files of its own to show.
    if (fallBack && !fs::is_directory(own / "UI"))
        return defaultLocalizationDirectory();
    return own;
}

void profileDirectory(const Path& folder)
{
    profile() = folder.empty() ? folder : fs::absolute(folder).lexically_normal();
}

Path optionsDirectory()
{
    return made(userDirectory("XDG_CONFIG_HOME", ".config", "options"));
}

Path cacheDirectory()
{
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
    const Path folder = fs::temp_directory_path() / ("quillet-" + std::to_string(getuid()));
    return create ? made(folder) : folder;
}

bool isPathInCloudCache(const Path& path)
{
    if (path.empty())
        return false;
    // Links and dots must not hide that a file lies in the cache; the file itself need not be there.
    boost::system::error_code error;
    const auto real = [&](const Path& any) {
        const Path absolute = fs::absolute(any).lexically_normal();
        const Path resolved = fs::weakly_canonical(absolute, error);
        return error ? absolute : resolved;
    };
    const Path cache = real(cloudCacheDirectory()), file = real(path);
    const auto [ofCache, ofFile] = std::mismatch(cache.begin(), cache.end(), file.begin(), file.end());
    return ofCache == cache.end();
}

} // namespace Vs::PathInfo
