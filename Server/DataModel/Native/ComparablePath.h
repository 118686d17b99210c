#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

namespace Vs::Native {

/// The path made absolute, free of "." and "..", with its symbolic links followed as far as it exists: two
/// paths of one file compare equal, however they were typed. Asks the file system.
boost::filesystem::path comparablePath(const std::wstring& path);

} // namespace Vs::Native
