#pragma once

#include <string>

namespace Vs {

/// A user's session with a service. The order of the first eight functions is settled: other add-ins call
/// them by their place. Main thread only.
class BaseAuth
{
public:
    /// Whether a user is signed in, also while his server can't be reached.
    virtual bool isLoggedIn() const = 0;
    /// True when a name was given back.
    virtual bool userName(std::wstring& name) const = 0;
    /// What the user signs in by. True when it was given back.
    virtual bool userId(std::string& id) const = 0;
    /// The service's address. True when one is set.
    virtual bool serverUrl(std::string& url) const = 0;
    /// Whether the service answered the last request.
    virtual bool isOnline() const = 0;
    /// Asks the service again whether it takes the credentials; true when it does.
    virtual bool verify() = 0;
    /// Whether the session is there in the next run.
    virtual bool isKept() const = 0;
    /// True when `result` holds an address that opens the site without another sign-in. `encoded` asks for
    /// one that is not to be encoded again.
    virtual bool authenticatedUrl(const std::wstring& url, std::string& result, bool encoded) const = 0;

    virtual ~BaseAuth() = default;
};

} // namespace Vs
