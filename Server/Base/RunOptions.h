#pragma once

#include <string>

/// Options that last as long as the run: they are read as ever, and can be changed, but the user's files keep
/// what they held. For runs that nobody sits at, which must not move what the user finds next time.
namespace Vs::RunOptions {

/// All options of the group whose names begin with `beginning`. Main thread.
void add(const std::string& group, const std::string& beginning);
/// Back to keeping everything.
void clear();
[[nodiscard]] bool contains(const std::string& group, const std::string& option);

} // namespace Vs::RunOptions
