#pragma once

#include "Server/Network/Http.h"

#include <functional>
#include <optional>
#include <string>

namespace Vs::Network {

/// A server that gives tokens for a drive, by its metadata.
struct TokenServer
{
    QString issuer;
    QUrl authorization, token, registration; ///< The last is empty where no program can register.
    QString scopes;                          ///< That the drive names.
};

/// Finds who gives tokens for the drive at that address: by what its refusal refers to, else at the places
/// where metadata is kept. `challenge` is the refusal's WWW-Authenticate.
std::optional<TokenServer> findTokenServer(Http& http, const QUrl& drive, const QByteArray& challenge);

/// Sends the person to the server's login page, and gets tokens for what the browser brings back.
Result signInByOAuth(const TokenServer& server, const std::function<bool(const std::string&)>& open,
                     Credentials& credentials, const Watch& watch);

/// Gets a new access token; false, with the credentials as they were, if there is none to be had.
bool renewToken(Credentials& credentials);

} // namespace Vs::Network
