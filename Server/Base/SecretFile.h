#pragma once

#include <optional>
#include <string>

/// Files by which a run without a window gets what it signs in with.
namespace Vs::SecretFile {

struct Content
{
    std::string file; ///< UTF-8, for messages.
    std::string text;
};

/// What the file holds that an environment variable names; nothing if the variable isn't set. The file must
/// be a regular one, this user's own and closed to all others (0600); otherwise throws Vs::Exception, whose
/// text has nothing of what the file holds.
[[nodiscard]] std::optional<Content> named(const char* variable);

} // namespace Vs::SecretFile
