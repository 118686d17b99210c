#pragma once

#include "Server/Skyvault/Drive.h"
#include "Server/Skyvault/Private/Cache.h"

namespace Vs::Cloud {

/// Whether the cache lacks the version of this ETag. What was changed here is never fetched over.
[[nodiscard]] bool isDownloadRequired(const Cache::Place& place, const std::string& etag);

/// Brings a file into the cache, in two steps of which the index knows. What was changed here and isn't on
/// the drive is kept under another name first, of which the person is told. Main thread.
[[nodiscard]] DriveResult download(const Cache::Place& place, DriveEntry& entry);

/// A name that is free in the folder, as "wheel (Anna 2026-03-14 15.09).vlra".
[[nodiscard]] std::string copyName(const Cache::Path& file, const std::wstring& who);

} // namespace Vs::Cloud
