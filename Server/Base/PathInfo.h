#pragma once

#include <boost/filesystem/path.hpp>

namespace Vs::PathInfo {

using Path = boost::filesystem::path;

/// The path from the root of the file system. Unlike Boost's function it needs no working folder, which may
/// be gone, if the path begins there already.
Path absolute(const Path& path);

/// The folder of the running tree, which holds `bin`, `lib`, `UI`, `Server` and `Localization`: QUILLET_ROOT
/// if that is set, otherwise found from where this library lies.
[[nodiscard]] Path rootDirectory();

/// The folder of the current language. With `fallBack`, that of English when the language has none.
[[nodiscard]] Path localizationDirectory(bool fallBack);
/// The folder of English, which holds every resource.
[[nodiscard]] Path defaultLocalizationDirectory();

// The folders below are this user's alone; those that are made are closed to others. Without a profile they
// lie where the desktop's variables say, or in the user's home, which is what HOME says or else what the
// system knows. Where there is none of these they lie in a folder of this process, which goes with it: never
// where others could have put something.

/// Puts options, caches and recovery files under one folder, so that runs do not disturb each other. Must be
/// called before any of the following is asked for.
void profileDirectory(const Path& folder);

/// Whether what is kept now is there in the next run: whether there is a profile or a home.
[[nodiscard]] bool hasHome();

/// Where the user's options lie; made if it isn't there.
[[nodiscard]] Path optionsDirectory();
/// Where things lie that can be made anew; made if it isn't there. QUILLET_CACHE_DIR, if that is set, also
/// with a profile.
[[nodiscard]] Path cacheDirectory();
/// Where recovery files lie; made if it isn't there.
[[nodiscard]] Path recoveryDirectory();
/// Where the cloud drive keeps its local copies.
[[nodiscard]] Path cloudCacheDirectory();

/// Where the user keeps Python scripts. With `create`, made if it isn't there.
[[nodiscard]] Path scriptsDirectory(bool create);
/// A folder of this user's for files that nobody misses: in the runtime folder of the session
/// (XDG_RUNTIME_DIR), else in the system's temporary one, or that of this process where somebody else has
/// taken the name there. With `create`, made if it isn't there.
[[nodiscard]] Path temporaryDirectory(bool create);

/// Whether the file lies in that folder of the drive's copies, however links lead there; asks the file's
/// disk.
[[nodiscard]] bool isPathInCloudCache(const Path& path);
/// The same by the path alone, for lists of files whose disks may not answer.
[[nodiscard]] bool isNamedInCloudCache(const Path& path);

} // namespace Vs::PathInfo
