#pragma once

#include "Server/Skyvault/Drive.h"

#include <boost/filesystem/path.hpp>

#include <optional>
#include <string>

namespace Vs::Cloud {

/// How somebody signs in, and where.
struct Access
{
    std::string address;
    DriveCredentials credentials;
};

/// What the file has that QUILLET_CLOUD_TOKEN_FILE names: a JSON object with "address", "user" and "secret",
/// all texts; a secret that is an OAuth 2 access token has "kind": "bearer" beside it. The file must be this
/// user's own and closed to all others (0600). Nothing if the variable is not set. Throws Vs::Exception,
/// whose text has no secret, if the file is unfit.
[[nodiscard]] std::optional<Access> accessOfTokenFile();

/// What a drive was found to do at the last sign-in, kept beside the cache; nothing if it isn't known. What
/// is damaged counts as not known.
[[nodiscard]] std::optional<DriveTraits> keptTraits(const boost::filesystem::path& file);
void keepTraits(const boost::filesystem::path& file, const DriveTraits& traits);

} // namespace Vs::Cloud
