#pragma once

#include <optional>
#include <string>

/// Files from which a run without a window gets its credentials.
namespace Vs::SecretFile {

struct Content
{
    std::string file; ///< UTF-8, for messages.
    std::string text;
};

/// The content of the file that an environment variable names; nothing if the variable isn't set. The file
/// must be a regular one, this user's own and closed to all others (0600); otherwise throws Vs::Exception,
/// whose text reveals nothing of the content.
[[nodiscard]] std::optional<Content> named(const char* variable);

} // namespace Vs::SecretFile
