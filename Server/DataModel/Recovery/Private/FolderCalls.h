#pragma once

#include "Server/DataModel/Native/FileCalls.h"

#include <string>

/// File and folder operations for recovery files, by the system calls that saves use.
namespace Vs::Recovery::FolderCalls {

/// Removes a file, or an empty folder. False, with errno, if it stays.
bool remove(const std::string& path, Native::FileCalls& calls = Native::FileCalls::current());
/// Removes a folder and its content, as far as possible.
void removeAll(const std::string& folder, Native::FileCalls& calls = Native::FileCalls::current());
/// Throws std::runtime_error with the cause.
void rename(const std::string& from, const std::string& to,
            Native::FileCalls& calls = Native::FileCalls::current());
/// Flushes the names in a folder to the disk. Does nothing where a file system can't do that.
void flush(const std::string& folder, Native::FileCalls& calls);

} // namespace Vs::Recovery::FolderCalls
