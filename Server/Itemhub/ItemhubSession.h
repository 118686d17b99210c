#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/ItemhubSignIn.h"

#include <functional>
#include <memory>
#include <string>

namespace Vs {

/// The user's session with the lifecycle service: the part of ItemhubUtilities that begins and ends it, says
/// how it stands, and shares it with the service's page in the browser. What fails throws as is told there.
/// Main thread only, but for what is said to be for any thread.
class ItemhubSession
{
public:
    /// By the user's option, or by the edition of the program.
    [[nodiscard]] bool ItemhubDisabled() const;

    /// Any thread.
    [[nodiscard]] bool isAuthenticated() const;
    /// Signs in by a token: a bearer's if there is no consumer key, else with signed requests (OAuth 1.0a).
    /// The address may have "?customer=" behind it, which names the tenant. On success ItemhubEventSite hears
    /// userAuthenticated; nothing is kept for the next run. On failure, which the user is told by
    /// fireErrorMessage, who was signed in before stays, and the answer is false.
    bool authenticateWithToken(const std::string& uri, const std::wstring& tenant, const std::wstring& token,
                               const std::wstring& tokenSecret, const std::wstring& sessionHandle,
                               const std::wstring& consumerKey, const std::wstring& consumerSecret);
    /// Signs in; the credentials are kept in the keyring if `keep` says so. False if the person cancelled.
    /// Where it fails or is cancelled, who was signed in before stays, as in the functions below.
    bool signIn(const Itemhub::Access& access, bool keep);
    /// With account and password, for which the service gives a token; nothing keeps the password.
    bool signInWithPassword(const std::string& address, const std::string& customer,
                            const std::string& account, const std::string& password, bool keep);
    /// By the system's browser, which `open` shows an address, on the main thread. ItemhubException with
    /// NotFound if the service offers no such way.
    bool signInByBrowser(const std::string& address, const std::string& customer, bool keep,
                         const std::function<bool(const std::string&)>& open);
    /// Starts the program's own service, which keeps everything in the profile and ends with the program, and
    /// signs in to it. It is what the program goes on with in the next run.
    bool signInToOwnService();
    /// Whether resume() has something to go on with. Asks neither the keyring nor the network.
    [[nodiscard]] bool canResume() const;
    /// Goes on with what the last run was signed in to, without asking anybody: with the token of the file
    /// that QUILLET_ITEMHUB_TOKEN_FILE names (see Itemhub::accessOfTokenFile), the keyring's, or the
    /// program's own service. False if there is nothing to go on with; throws like signIn. A service that
    /// can't be reached ends no session that the keyring knows: it is there, and not online.
    bool resume();
    /// Uses another system, which `name` tells from others in folders of the disk.
    void signInTo(std::shared_ptr<Itemhub::ItemStore> store, const std::string& name);
    /// Ends the session here and at the service, and takes the credentials out of the keyring. What waits to
    /// be uploaded stays, and goes on when the same account signs in again.
    void signOut();

    /// What the service calls the user; empty while nobody is signed in.
    [[nodiscard]] std::wstring accountName() const;
    [[nodiscard]] std::wstring customer() const;
    /// The service's address; empty for the program's own, and while nobody is signed in.
    [[nodiscard]] std::string serviceAddress() const;
    [[nodiscard]] bool isOwnService() const;
    /// Whether the service answered the last request.
    [[nodiscard]] bool isOnline() const;
    /// Whether the session is there in the next run.
    [[nodiscard]] bool isKept() const;

    /// @name The service's dashboard
    /// A page in the browser, which asks the program for things that the person wants to have done here
    /// (ItemhubEventSite::dashboardAsked). Any thread, but for the first.
    /// @{

    /// An address by which the browser is signed in, once and soon; empty if the person cancelled.
    [[nodiscard]] std::string dashboardAddress() const;
    /// No other program gets the request then. NotFound if another has it, or it is too old.
    [[nodiscard]] Itemhub::DashboardRequest takeDashboardRequest(std::int64_t id) const;
    /// The same by the ticket of a link, which says nothing else: the service is that of the session.
    [[nodiscard]] Itemhub::DashboardRequest redeemTicket(const std::string& ticket) const;
    /// Tells the page what came of it; `detail` says why it failed.
    void answerDashboard(std::int64_t request, Itemhub::DashboardAnswer answer,
                         const std::wstring& detail) const;
    /// @}

    /// Who knows whether the edition of the program has no lifecycle service; null for nobody.
    static void editionDisables(std::function<bool()> asked);

protected:
    ItemhubSession() = default;
    ~ItemhubSession() = default;
    ItemhubSession(const ItemhubSession&) = delete;
    ItemhubSession& operator=(const ItemhubSession&) = delete;
};

} // namespace Vs
