#pragma once

#include <string>

namespace Vs {

/// A user's session with a service. The order of the first eight functions is fixed: other add-ins call them
/// by their position. Main thread only.
class BaseAuth
{
public:
    /// Whether a user is signed in, even if the server can't be reached.
    virtual bool isLoggedIn() const = 0;
    /// True if there is a name.
    virtual bool userName(std::wstring& name) const = 0;
    /// The identifier that the user signs in with. True if there is one.
    virtual bool userId(std::string& id) const = 0;
    /// The service's address. True when one is set.
    virtual bool serverUrl(std::string& url) const = 0;
    /// Whether the service answered the last request.
    virtual bool isOnline() const = 0;
    /// Asks the service again whether it accepts the credentials; true if it does.
    virtual bool verify() = 0;
    /// Whether the session will still exist in the next run.
    virtual bool isKept() const = 0;
    /// True if `result` contains an address that opens the site without signing in again. `encoded` asks for
    /// one that is already fully encoded.
    virtual bool authenticatedUrl(const std::wstring& url, std::string& result, bool encoded) const = 0;

    virtual ~BaseAuth() = default;
};

} // namespace Vs
