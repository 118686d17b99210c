#pragma once

#include <functional>
#include <string>

/// How documents learn that their files belong to the cloud drive, which is a layer above the data model.
/// Main thread only.
namespace Vs::CloudIdentifiers {

/// Installs the function that knows the identifier of a file in the drive's cache; empty for none.
void source(std::function<std::string(const std::wstring& path)> source);
/// A document's identifier when it gets this path: that of a file on the drive, nothing for a file elsewhere,
/// and the old one where nobody knows.
[[nodiscard]] std::string of(const std::wstring& path, const std::string& old);

} // namespace Vs::CloudIdentifiers
