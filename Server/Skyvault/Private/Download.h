#pragma once

#include "Server/Skyvault/Drive.h"
#include "Server/Skyvault/Private/Cache.h"

namespace Vs::Cloud {

/// Whether the cache lacks the version with this ETag. Local changes are never overwritten by a download.
[[nodiscard]] bool isDownloadRequired(const Cache::Place& place, const std::string& etag);

/// Downloads a file to the cache, in two steps recorded in the index. Local changes that aren't on the drive
/// are first saved under another name, which is reported to the user. Main thread.
[[nodiscard]] DriveResult download(const Cache::Place& place, DriveEntry& entry);

/// A free name in the folder, for example "wheel (Anna 2026-03-14 15.09).vlra".
[[nodiscard]] std::string copyName(const Cache::Path& file, const std::wstring& who);

} // namespace Vs::Cloud
