#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/ItemhubSignIn.h"

#include <functional>
#include <memory>
#include <string>

namespace Vs {

/// The user's session with the lifecycle service: the part of ItemhubUtilities that starts and ends it,
/// reports its state, and shares it with the service's page in the browser. Failures throw as documented
/// there. Main thread only, unless stated otherwise.
class ItemhubSession
{
public:
    /// By the user's option or by the program's edition.
    [[nodiscard]] bool ItemhubDisabled() const;

    /// Any thread.
    [[nodiscard]] bool isAuthenticated() const;
    /// Signs in with a token: a bearer token if there is no consumer key, otherwise with signed requests
    /// (OAuth 1.0a). "?customer=" may be appended to the address to name the tenant. On success
    /// ItemhubEventSite receives userAuthenticated; nothing is kept for the next run. On failure, which is
    /// reported to the user by fireErrorMessage, the previous session stays and the result is false.
    bool authenticateWithToken(const std::string& uri, const std::wstring& tenant, const std::wstring& token,
                               const std::wstring& tokenSecret, const std::wstring& sessionHandle,
                               const std::wstring& consumerKey, const std::wstring& consumerSecret);
    /// Signs in; keeps the credentials in the keyring if `keep` is set. False if the user cancelled. On
    /// failure or cancellation the previous session stays, as in the functions below.
    bool signIn(const Itemhub::Access& access, bool keep);
    /// Signs in with account and password, for which the service issues a token; the password is kept
    /// nowhere.
    bool signInWithPassword(const std::string& address, const std::string& customer,
                            const std::string& account, const std::string& password, bool keep);
    /// Signs in through the system's browser; `open`, called on the main thread, shows it an address.
    /// ItemhubException with NotFound if the service doesn't support that.
    bool signInByBrowser(const std::string& address, const std::string& customer, bool keep,
                         const std::function<bool(const std::string&)>& open);
    /// Starts the program's own service, which keeps all data in the profile and ends with the program,
    /// and signs in to it. The next run resumes with it.
    bool signInToOwnService();
    /// Whether resume() has something to resume. Accesses neither the keyring nor the network.
    [[nodiscard]] bool canResume() const;
    /// Resumes the last run's session without prompting: with the token from the file named by
    /// QUILLET_ITEMHUB_TOKEN_FILE (see Itemhub::accessOfTokenFile), with that from the keyring, or with the
    /// program's own service. False if there is nothing to resume; throws like signIn. An unreachable service
    /// doesn't end a session from the keyring: it exists, but is offline.
    bool resume();
    /// Uses another system; `name` distinguishes it from others in folder names on disk.
    void signInTo(std::shared_ptr<Itemhub::ItemStore> store, const std::string& name);
    /// Ends the session here and at the service, and removes the credentials from the keyring. Pending
    /// uploads stay, and continue when the same account signs in again.
    void signOut();

    /// The user's name at the service; empty while nobody is signed in.
    [[nodiscard]] std::wstring accountName() const;
    [[nodiscard]] std::wstring customer() const;
    /// The service's address; empty for the program's own, and while nobody is signed in.
    [[nodiscard]] std::string serviceAddress() const;
    [[nodiscard]] bool isOwnService() const;
    /// Whether the service answered the last request.
    [[nodiscard]] bool isOnline() const;
    /// Whether the session will still exist in the next run.
    [[nodiscard]] bool isKept() const;

    /// @name The service's dashboard
    /// A page in the browser that asks the program to do things for the user
    /// (ItemhubEventSite::dashboardAsked). Any thread, except for the first.
    /// @{

    /// A short-lived address that signs the browser in, once; empty if the user cancelled.
    [[nodiscard]] std::string dashboardAddress() const;
    /// Claims the request, so that no other program gets it. NotFound if another one has claimed it or it
    /// is too old.
    [[nodiscard]] Itemhub::DashboardRequest takeDashboardRequest(std::int64_t id) const;
    /// The same for the ticket of a link, which carries nothing else: the service is the session's.
    [[nodiscard]] Itemhub::DashboardRequest redeemTicket(const std::string& ticket) const;
    /// Reports the outcome to the page; `detail` says why it failed.
    void answerDashboard(std::int64_t request, Itemhub::DashboardAnswer answer,
                         const std::wstring& detail) const;
    /// @}

    /// `asked` tells whether the program's edition has no lifecycle service; null removes it.
    static void editionDisables(std::function<bool()> asked);

protected:
    ItemhubSession() = default;
    ~ItemhubSession() = default;
    ItemhubSession(const ItemhubSession&) = delete;
    ItemhubSession& operator=(const ItemhubSession&) = delete;
};

} // namespace Vs
