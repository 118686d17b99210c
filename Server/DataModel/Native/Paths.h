#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

/// The data model's questions about paths. All of them access the file system.
namespace Vs::Native {

/// The path made absolute, free of "." and "..", with its symbolic links resolved as far as it exists: two
/// paths of one file compare equal, however they were typed.
[[nodiscard]] boost::filesystem::path comparablePath(const std::wstring& path);

/// The path made absolute, with its own symbolic links resolved, even if their target doesn't exist. Throws
/// std::runtime_error with the cause.
std::string followedPath(const std::string& path);

/// Whether there is a write-protected file. A superuser may write everything, but the protection is respected
/// all the same.
[[nodiscard]] bool isWriteProtected(const std::string& path);

/// Whether an open ordinary file is still what has the path, and wasn't removed or replaced meanwhile.
[[nodiscard]] bool isStillAt(int descriptor, const std::string& path);

} // namespace Vs::Native
