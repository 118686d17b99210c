#pragma once

#include <string>

/// Options that last as long as the run: they are read as usual, and can be changed, but the user's files
/// stay as they are. For unattended runs, which must not change what the user finds next time.
namespace Vs::RunOptions {

/// All options of the group whose names start with `beginning`. Main thread.
void add(const std::string& group, const std::string& beginning);
/// Back to keeping everything.
void clear();
[[nodiscard]] bool contains(const std::string& group, const std::string& option);

} // namespace Vs::RunOptions
