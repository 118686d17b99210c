#pragma once

#include "Server/Network/Http.h"

#include <functional>
#include <optional>
#include <string>

namespace Vs::Network {

/// The authorization server of a drive, according to its metadata.
struct TokenServer
{
    QString issuer;
    QUrl authorization, token, registration; ///< The last is empty if programs can't register.
    QString scopes;                          ///< As named by the drive.
};

/// Finds the authorization server for the drive at that address: by what its refusal refers to, otherwise at
/// the well-known metadata locations. `challenge` is the refusal's WWW-Authenticate header.
std::optional<TokenServer> findTokenServer(Http& http, const QUrl& drive, const QByteArray& challenge);

/// Sends the user to the server's login page, and exchanges what the browser brings back for tokens.
Result signInByOAuth(const TokenServer& server, const std::function<bool(const std::string&)>& open,
                     Credentials& credentials, const Watch& watch);

/// Gets a new access token; false, leaving the credentials unchanged, if that isn't possible.
bool renewToken(Credentials& credentials);

} // namespace Vs::Network
