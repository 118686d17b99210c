#include "Server/Itemhub/ItemhubSession.h"

#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Server/Itemhub/Private/Ask.h"
#include "Server/Itemhub/Private/Session.h"
#include "Server/Itemhub/Private/SignIn.h"
#include "Server/Itemhub/Private/Texts.h"

namespace Vs {

using Itemhub::ItemStore;
using Itemhub::Session;
using Itemhub::Watch;

namespace {

std::wstring asking()
{
    return Itemhub::localized("ItemhubAsking", "Asking the lifecycle service");
}

std::function<bool()>& edition()
{
    static std::function<bool()> asked;
    return asked;
}

} // namespace

bool ItemhubSession::ItemhubDisabled() const
{
    return ItemhubOptionGroup::get()->itemhubDisabled() || (edition() && edition()());
}

void ItemhubSession::editionDisables(std::function<bool()> asked)
{
    edition() = std::move(asked);
}

bool ItemhubSession::isAuthenticated() const
{
    return Session::get().store() != nullptr;
}

bool ItemhubSession::authenticateWithToken(const std::string& uri, const std::wstring& tenant,
                                           const std::wstring& token, const std::wstring& tokenSecret,
                                           const std::wstring& sessionHandle, const std::wstring& consumerKey,
                                           const std::wstring& consumerSecret)
{
    try {
        Itemhub::Access access = Itemhub::SignIn::accessTo(uri);
        if (!tenant.empty())
            access.customer = Strings::narrow(tenant);
        access.token = Strings::narrow(token);
        access.tokenSecret = Strings::narrow(tokenSecret);
        access.sessionHandle = Strings::narrow(sessionHandle);
        access.consumerKey = Strings::narrow(consumerKey);
        access.consumerSecret = Strings::narrow(consumerSecret);
        if (!consumerKey.empty())
            access.kind = Itemhub::Access::Kind::Signed;
        return signIn(access, false);
    } catch (...) {
        ItemhubUtilities::get()->fireErrorMessage(ItemhubUtilities::currentFailure());
        return false;
    }
}

bool ItemhubSession::signIn(const Itemhub::Access& access, bool keep)
{
    return Itemhub::SignIn::with(access, keep);
}

bool ItemhubSession::signInWithPassword(const std::string& address, const std::string& customer,
                                        const std::string& account, const std::string& password, bool keep)
{
    const auto access = Itemhub::SignIn::byPassword(address, customer, account, password);
    return access && signIn(*access, keep);
}

bool ItemhubSession::signInByBrowser(const std::string& address, const std::string& customer, bool keep,
                                     const std::function<bool(const std::string&)>& open)
{
    const auto access = Itemhub::SignIn::byBrowser(address, customer, open);
    return access && signIn(*access, keep);
}

bool ItemhubSession::signInToOwnService()
{
    return Itemhub::SignIn::toOwnService();
}

bool ItemhubSession::canResume() const
{
    return Itemhub::SignIn::canResume();
}

bool ItemhubSession::resume()
{
    return Itemhub::SignIn::resume();
}

void ItemhubSession::signInTo(std::shared_ptr<ItemStore> store, const std::string& name)
{
    Itemhub::SignIn::to(std::move(store), name);
}

void ItemhubSession::signOut()
{
    Itemhub::SignIn::out();
}

std::wstring ItemhubSession::accountName() const
{
    return Strings::widen(Session::get().facts().account.name);
}

std::wstring ItemhubSession::customer() const
{
    return Strings::widen(Session::get().facts().account.customer);
}

std::string ItemhubSession::serviceAddress() const
{
    return Session::get().facts().address;
}

bool ItemhubSession::isOwnService() const
{
    return Session::get().facts().isOwn;
}

bool ItemhubSession::isOnline() const
{
    return Session::get().isOnline();
}

bool ItemhubSession::isKept() const
{
    return Session::get().facts().isKept;
}

std::string ItemhubSession::dashboardAddress() const
{
    return Itemhub::ask(asking(),
                        [](ItemStore& store, const Watch& watch) { return store.dashboard(watch); });
}

Itemhub::DashboardRequest ItemhubSession::takeDashboardRequest(std::int64_t id) const
{
    return Itemhub::ask(asking(),
                        [id](ItemStore& store, const Watch& watch) { return store.takeRequest(id, watch); });
}

Itemhub::DashboardRequest ItemhubSession::redeemTicket(const std::string& ticket) const
{
    return Itemhub::ask(
        asking(), [&](ItemStore& store, const Watch& watch) { return store.redeemTicket(ticket, watch); });
}

void ItemhubSession::answerDashboard(std::int64_t request, Itemhub::DashboardAnswer answer,
                                     const std::wstring& detail) const
{
    Itemhub::askStore(asking(), [&](ItemStore& store, const Watch& watch) {
        store.answerRequest(request, answer, Strings::narrow(detail), watch);
    });
}

} // namespace Vs
