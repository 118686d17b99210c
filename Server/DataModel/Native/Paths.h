#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

/// What the data model asks about paths. All of it asks the file system.
namespace Vs::Native {

/// The path made absolute, free of "." and "..", with its symbolic links followed as far as it exists: two
/// paths of one file compare equal, however they were typed.
[[nodiscard]] boost::filesystem::path comparablePath(const std::wstring& path);

/// The path made absolute, with its own symbolic links followed, also where what they point to doesn't exist.
/// Throws std::runtime_error with the cause.
std::string followedPath(const std::string& path);

/// Whether there is a file that may not be written. A superuser may write everything; the protection is meant
/// all the same.
[[nodiscard]] bool isWriteProtected(const std::string& path);

} // namespace Vs::Native
