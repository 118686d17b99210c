#pragma once

#include <functional>
#include <string>

/// How documents learn that their files are of the cloud drive, which stands above the data model. Main
/// thread only.
namespace Vs::CloudIdentifiers {

/// Who knows the identifier of a file in the drive's cache; empty for none.
void source(std::function<std::string(const std::wstring& path)> source);
/// What a document's identifier is when it gets this path: that of a file of the drive, nothing for a file
/// that lies elsewhere, and the old one where nobody knows.
[[nodiscard]] std::string of(const std::wstring& path, const std::string& old);

} // namespace Vs::CloudIdentifiers
