#pragma once

#include <boost/filesystem/path.hpp>

namespace Vs::PathInfo {

using Path = boost::filesystem::path;

/// The folder of the running tree, which holds `bin`, `lib`, `UI`, `Server` and `Localization`: QUILLET_ROOT
/// if that is set, otherwise found from where this library lies.
[[nodiscard]] Path rootDirectory();

/// The folder of the current language. With `fallBack`, that of English when the language has none.
[[nodiscard]] Path localizationDirectory(bool fallBack);
/// The folder of English, which holds every resource.
[[nodiscard]] Path defaultLocalizationDirectory();

/// Puts options, caches and recovery files under one folder, so that runs do not disturb each other. Must be
/// called before any of the following is asked for.
void profileDirectory(const Path& folder);

/// Where the user's options lie; made if it isn't there.
[[nodiscard]] Path optionsDirectory();
/// Where things lie that can be made anew; made if it isn't there.
[[nodiscard]] Path cacheDirectory();
/// Where recovery files lie; made if it isn't there.
[[nodiscard]] Path recoveryDirectory();
/// Where the cloud drive keeps its local copies.
[[nodiscard]] Path cloudCacheDirectory();

/// Where the user keeps Python scripts. With `create`, made if it isn't there.
[[nodiscard]] Path scriptsDirectory(bool create);
/// A folder of this user's for files that nobody misses. With `create`, made if it isn't there.
[[nodiscard]] Path temporaryDirectory(bool create);

[[nodiscard]] bool isPathInCloudCache(const Path& path);

} // namespace Vs::PathInfo
