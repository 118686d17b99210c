#pragma once

#include <string>

namespace Vs::Network {

/// How a user authenticates. Secrets are held in memory as long as needed and appear in no text.
struct Credentials
{
    enum class Kind { None, Password, Bearer };
    Kind kind = Kind::None;
    std::string user;
    std::string secret; ///< A password, preferably an app password for this program, or an access token.
    // For OAuth 2; renewed tokens are returned by Http::credentials.
    std::string refreshToken;
    std::string tokenAddress; ///< Where tokens are renewed.
    std::string client;       ///< This program's client identifier there.
};

} // namespace Vs::Network
