#pragma once

#include <string>

namespace Vs::Network {

/// How a user proves who he is. Secrets are held in memory as long as needed, and stand in no text.
struct Credentials
{
    enum class Kind { None, Password, Bearer };
    Kind kind = Kind::None;
    std::string user;
    std::string secret; ///< A password, best one for this program alone, or an access token.
    // Of OAuth 2; renewed tokens come back by Http::credentials.
    std::string refreshToken;
    std::string tokenAddress; ///< Where tokens are renewed.
    std::string client;       ///< By which this program is known there.
};

} // namespace Vs::Network
