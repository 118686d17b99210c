#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

namespace TestSupport {

/// The bytes of a file; empty if it can't be read.
std::string contentOf(const boost::filesystem::path& file);
/// Makes the file, or replaces what it holds.
void overwrite(const boost::filesystem::path& file, const std::string& content);

} // namespace TestSupport
