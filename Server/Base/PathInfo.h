#pragma once

#include <boost/filesystem/path.hpp>

namespace Vs::PathInfo {

using Path = boost::filesystem::path;

/// The path from the root of the file system. Unlike Boost's function, it needs no working folder, which may
/// be gone, if the path is absolute already.
Path absolute(const Path& path);

/// The folder of the running tree, which holds `bin`, `lib`, `UI`, `Server` and `Localization`: QUILLET_ROOT
/// if that is set, otherwise found from the location of this library.
[[nodiscard]] Path rootDirectory();

/// The folder of the current language. With `fallBack`, that of English if the language has none.
[[nodiscard]] Path localizationDirectory(bool fallBack);
/// The folder of English, which holds every resource.
[[nodiscard]] Path defaultLocalizationDirectory();

// The following folders belong to this user alone; new ones are closed to others. Without a profile they are
// where the desktop's variables say, or in the user's home, as given by HOME or else by the system. Where
// there is none of these, they are in a folder of this process, which is removed with it: never where others
// could have put something.

/// Puts options, caches and recovery files under one folder, so that runs do not disturb each other. Must be
/// called before any of the following is asked for.
void profileDirectory(const Path& folder);

/// Whether what is kept now will exist in the next run: whether there is a profile or a home.
[[nodiscard]] bool hasHome();

/// Where the user's options are; created if missing.
[[nodiscard]] Path optionsDirectory();
/// Where things lie that can be made anew; made if it isn't there. QUILLET_CACHE_DIR, if that is set, also
/// with a profile.
[[nodiscard]] Path cacheDirectory();
/// Where recovery files are; created if missing.
[[nodiscard]] Path recoveryDirectory();
/// Where the cloud drive keeps its local copies.
[[nodiscard]] Path cloudCacheDirectory();

/// Where the user keeps Python scripts. With `create`, created if missing.
[[nodiscard]] Path scriptsDirectory(bool create);
/// A folder of this user for expendable files: in the runtime folder of the session (XDG_RUNTIME_DIR), else
/// in the system's temporary one, or that of this process if somebody else has taken the name there. With
/// `create`, created if missing.
[[nodiscard]] Path temporaryDirectory(bool create);

/// Whether the file is in that folder of the drive's copies, through whatever links; accesses the file's
/// disk.
[[nodiscard]] bool isPathInCloudCache(const Path& path);
/// The same by the path alone, for lists of files whose disks may not respond.
[[nodiscard]] bool isNamedInCloudCache(const Path& path);

} // namespace Vs::PathInfo
