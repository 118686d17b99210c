#pragma once

#include <string>
#include <vector>

/// Pictures of foreign files that were open, which have no place for one in them. They lie in the cache,
/// named for the file as it was then: one that was changed has none.
namespace Vu::Commands::FilePictures {

/// Where they lie; made if it isn't there. Main thread.
[[nodiscard]] std::wstring folder();

/// The bytes of the file's picture in that folder; empty if there is none. Any thread.
[[nodiscard]] std::string of(const std::wstring& path, const std::wstring& folder);

/// Keeps a picture of the file as it is now, in place of an earlier one. Where it can't be written, there is
/// none. Any thread.
void keep(const std::wstring& path, const std::string& picture, const std::wstring& folder);

/// Takes away those of all other files. Any thread.
void keepOnly(const std::vector<std::wstring>& paths, const std::wstring& folder);

} // namespace Vu::Commands::FilePictures
