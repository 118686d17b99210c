#pragma once

#include <string>
#include <vector>

/// Pictures of foreign files that were opened before, whose formats can't hold one. They are stored in the
/// cache, named after the file in its state at that time: a file changed since has none.
namespace Vu::Commands::FilePictures {

/// The folder of the pictures; created if missing. Main thread.
[[nodiscard]] std::wstring folder();

/// The bytes of the file's picture in that folder; empty if there is none. Any thread.
[[nodiscard]] std::string of(const std::wstring& path, const std::wstring& folder);

/// Stores a picture of the file as it is now, replacing an earlier one. If it can't be written, there is
/// none. Any thread.
void keep(const std::wstring& path, const std::string& picture, const std::wstring& folder);

/// Removes the pictures of all other files. Any thread.
void keepOnly(const std::vector<std::wstring>& paths, const std::wstring& folder);

} // namespace Vu::Commands::FilePictures
