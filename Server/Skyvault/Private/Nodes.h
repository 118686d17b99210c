#pragma once

#include "Server/Skyvault/Drive.h"
#include "Server/Skyvault/Private/Cache.h"
#include "Server/Skyvault/SkyvaultNodeData.h"

#include <string>

/// The drive's tree as values. Main thread only.
namespace Vs::Cloud {

[[nodiscard]] SkyvaultNodeData nodeOf(const DriveEntry& entry);
/// What the index knows about a file.
[[nodiscard]] SkyvaultNodeData nodeOf(const CacheRow& row);
/// A folder with what the index knows about its files and about subfolders that contain any; for when the
/// drive can't be reached.
[[nodiscard]] SkyvaultNodeData knownFolder(const Cache::Path& root, const std::string& id);

/// Reads a folder with its children. With `make`, creates it if it doesn't exist. If the drive can't be
/// reached, or reading is cancelled, `node` is what the index knows.
[[nodiscard]] DriveResult readFolder(const std::string& id, bool make, SkyvaultNodeData& node);
/// One file or folder.
[[nodiscard]] DriveResult readNode(const std::string& id, DriveEntry& entry);

} // namespace Vs::Cloud
