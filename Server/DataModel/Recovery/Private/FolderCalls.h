#pragma once

#include "Server/DataModel/Native/FileCalls.h"

#include <string>

/// What is done to the files and folders of recovery files, by the calls of saves.
namespace Vs::Recovery::FolderCalls {

/// Removes a file, or a folder with nothing in it. False, with errno, if it stays.
bool remove(const std::string& path, Native::FileCalls& calls = Native::FileCalls::current());
/// Removes a folder with what lies in it, as far as that can be removed.
void removeAll(const std::string& folder, Native::FileCalls& calls = Native::FileCalls::current());
/// Throws std::runtime_error with the cause.
void rename(const std::string& from, const std::string& to,
            Native::FileCalls& calls = Native::FileCalls::current());
/// Has the names in a folder on the disk. Where a file system can't do that, nothing happens.
void flush(const std::string& folder, Native::FileCalls& calls);

} // namespace Vs::Recovery::FolderCalls
