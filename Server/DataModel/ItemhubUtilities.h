#pragma once

#include <string>

namespace Vs {

/// The client of the lifecycle service, brought by the library that knows the service's protocol. Where none
/// is loaded there is no service, which callers treat as nobody being signed in. Main thread only.
class ItemhubUtilities
{
public:
    virtual ~ItemhubUtilities();

    /// Null as long as nobody has brought one.
    [[nodiscard]] static ItemhubUtilities* get();
    /// Not owned; null takes it away.
    static void install(ItemhubUtilities* client);

    /// Whether a user is signed in.
    [[nodiscard]] virtual bool isAuthenticated() const = 0;
    /// Fetches an attachment into a local file and gives its path, which is empty if nothing was fetched.
    [[nodiscard]] virtual std::wstring downloadAttachment(const std::wstring& url) const = 0;
    /// Tells the user of a failure of the service.
    virtual void fireErrorMessage(const std::wstring& message) const = 0;
};

} // namespace Vs
