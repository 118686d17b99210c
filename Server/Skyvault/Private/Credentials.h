#pragma once

#include "Server/Skyvault/Drive.h"

#include <boost/filesystem/path.hpp>

#include <optional>
#include <string>

namespace Vs::Cloud {

/// The credentials of a sign-in, and its server.
struct Access
{
    std::string address;
    DriveCredentials credentials;
};

/// The contents of the file named by QUILLET_CLOUD_TOKEN_FILE: a JSON object with the strings "address",
/// "user" and "secret"; if the secret is an OAuth 2 access token, also "kind": "bearer". The file must belong
/// to this user and be inaccessible to all others (0600). Nothing if the variable is not set. Throws
/// Vs::Exception, whose text contains no secret, if the file is unsuitable.
[[nodiscard]] std::optional<Access> accessOfTokenFile();

/// The traits found at the last sign-in, stored beside the cache; nothing if they aren't known. Damaged ones
/// count as unknown.
[[nodiscard]] std::optional<DriveTraits> keptTraits(const boost::filesystem::path& file);
void keepTraits(const boost::filesystem::path& file, const DriveTraits& traits);

} // namespace Vs::Cloud
