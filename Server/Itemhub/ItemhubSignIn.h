#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Vs::Itemhub {

/// How a user authenticates at a service. Secrets are held in memory as long as needed and appear in no
/// text. All of it is UTF-8.
struct Access
{
    enum class Kind {
        Bearer,  ///< `token` alone.
        Signed,  ///< Requests are signed by OAuth 1.0a with all four secrets.
        Renewed, ///< `token` is an OAuth 2 bearer token, renewed by `refreshToken`.
        Key      ///< `token` is a user's key, sent in place of name and password.
    };

    /// "https://items.example.org/", or "redmine+https://tracker.example.org/" for an issue tracker, whose
    /// `token` is the user's key there; http only on this machine.
    std::string address;
    std::string customer; ///< The tenant; may be empty if the service has only one.
    Kind kind = Kind::Bearer;
    std::string token;
    std::string tokenSecret;    ///< For Signed.
    std::string sessionHandle;  ///< For Signed; renews an expired token. May be empty.
    std::string consumerKey;    ///< For Signed.
    std::string consumerSecret; ///< For Signed.
    std::string refreshToken;   ///< For Renewed.
    std::string tokenAddress;   ///< For Renewed.
    std::string client;         ///< For Renewed: this program's identifier there.
    std::int64_t grantedId =
        0;              ///< Of a token that this program got for a password; it ends with the session.
    bool isOwn = false; ///< The program's own service, whose port differs in each run.
};

/// The contents of the file named by QUILLET_ITEMHUB_TOKEN_FILE: a JSON object with the strings
/// "address", "customer" and "token", and, for signed requests, "tokenSecret", "consumerKey",
/// "consumerSecret" and optionally "sessionHandle". The file must belong to this user and be inaccessible to
/// all others (0600). Nothing if the variable is not set. Throws Vs::Exception, whose text contains no
/// secret, if the file is unsuitable.
[[nodiscard]] std::optional<Access> accessOfTokenFile();

} // namespace Vs::Itemhub
