#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Vs::Itemhub {

/// How a user proves who he is at a service. Secrets are held in memory as long as needed, and stand in no
/// text. All of it UTF-8.
struct Access
{
    enum class Kind {
        Bearer,  ///< `token` alone.
        Signed,  ///< Requests are signed by OAuth 1.0a with the four secrets.
        Renewed, ///< `token` is a bearer's of OAuth 2, which `refreshToken` renews.
        Key      ///< `token` is a user's key, which goes where a name and a password go.
    };

    /// "https://items.example.org/", or "redmine+https://tracker.example.org/" for an issue tracker, whose
    /// `token` is the user's key there; http only on this machine.
    std::string address;
    std::string customer; ///< The tenant; may be empty where the service has but one.
    Kind kind = Kind::Bearer;
    std::string token;
    std::string tokenSecret;    ///< Of Signed.
    std::string sessionHandle;  ///< Of Signed; renews a token that has expired. May be empty.
    std::string consumerKey;    ///< Of Signed.
    std::string consumerSecret; ///< Of Signed.
    std::string refreshToken;   ///< Of Renewed.
    std::string tokenAddress;   ///< Of Renewed.
    std::string client;         ///< Of Renewed: by which this program is known there.
    std::int64_t grantedId =
        0;              ///< Of a token that this program got for a password; it ends with the session.
    bool isOwn = false; ///< The program's own service, whose port is another one in each run.
};

/// What the file has that QUILLET_ITEMHUB_TOKEN_FILE names: a JSON object with the texts "address",
/// "customer" and "token", and, for signed requests, "tokenSecret", "consumerKey", "consumerSecret" and, if
/// there is one, "sessionHandle". The file must be this user's own and closed to all others (0600). Nothing
/// if the variable is not set. Throws Vs::Exception, whose text has no secret, if the file is unfit.
[[nodiscard]] std::optional<Access> accessOfTokenFile();

} // namespace Vs::Itemhub
