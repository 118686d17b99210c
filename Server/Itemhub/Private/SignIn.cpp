#include "Server/Itemhub/Private/SignIn.h"

#include "Server/Base/QtApplication.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Server/Itemhub/Private/Ask.h"
#include "Server/Itemhub/Private/EventListener.h"
#include "Server/Itemhub/Private/OwnService.h"
#include "Server/Itemhub/Private/Places.h"
#include "Server/Itemhub/Private/Session.h"
#include "Server/Itemhub/Private/Texts.h"
#include "Server/Itemhub/Private/Transport.h"
#include "Server/Itemhub/Private/UploadQueue.h"

#include <QUrl>
#include <QUrlQuery>
#include <QUuid>

#include <cstdlib>
#include <optional>

namespace Vs::Itemhub {
namespace {

using Kind = Web::ItemhubException::Kind;

constexpr QLatin1String kTracker("redmine+"); ///< Before the address of an issue tracker.
constexpr const char* kOwnAccount = "own";    ///< The folder of the own service's account.

std::wstring title()
{
    return localized("ItemhubSigningIn", "Signing in to the lifecycle service");
}

[[noreturn]] void refuse(Kind kind, const std::wstring& text)
{
    throw Web::ItemhubException(kind, Strings::narrow(text));
}

void refuseIfDisabled()
{
    if (ItemhubUtilities::get()->ItemhubDisabled())
        refuse(Kind::Disabled, localized("ItemhubDisabled", "The lifecycle service is switched off."));
}

ItemTransport& transport()
{
    QtApplication::need();
    return ItemTransport::get();
}

void tellSession()
{
    ItemhubEvent event;
    ItemhubEventSource::get()->fireSessionChanged(&event);
}

void begin(const std::shared_ptr<ItemStore>& store, const Session::Facts& facts, bool isOnline)
{
    UploadQueue::get().stop();
    EventListener::get().stop();
    Session::get().begin(store, facts, isOnline);
    UploadQueue::get().begin();
    EventListener::get().start(store, facts.account.name);
    ItemhubEvent event;
    ItemhubEventSource::get()->fireUserAuthenticated(&event);
    tellSession();
}

void rememberSession(const Session::Facts& facts)
{
    ItemhubOptionGroup* options = ItemhubOptionGroup::get();
    options->service(Strings::widen(facts.address));
    options->customer(Strings::widen(facts.account.customer));
    options->account(Strings::widen(facts.account.name));
    options->kept(facts.isKept);
    options->ownService(facts.isOwn);
}

/// The credentials' key in the keyring.
std::string keyOf(const std::string& address, const std::string& customer)
{
    return "itemhub " + address + (customer.empty() ? "" : "?customer=" + customer);
}

bool isOfThisMachine(const QUrl& url)
{
    return url.host() == "localhost" || url.host() == "127.0.0.1" || url.host() == "::1";
}

Access whereIs(const std::string& address, const std::string& customer)
{
    Access access = SignIn::accessTo(address);
    if (!customer.empty())
        access.customer = customer;
    return access;
}

std::optional<Access> ofKeyring()
{
    const ItemhubOptionGroup* options = ItemhubOptionGroup::get();
    const std::string key = keyOf(Strings::narrow(options->service()), Strings::narrow(options->customer()));
    std::optional<Access> found;
    runBeside(title(), [&, &way = transport()](const Watch&) { found = way.kept(key); });
    return found;
}

} // namespace

Access SignIn::accessTo(const std::string& uri)
{
    QString named = QString::fromStdString(uri).trimmed();
    const bool isTracker = named.startsWith(kTracker);
    QUrl url(isTracker ? named.mid(kTracker.size()) : named);
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo().isEmpty() ||
        (url.scheme() != "https" && url.scheme() != "http"))
        refuse(Kind::BadRequest,
               localizedFormat(
                   "ItemhubBadAddress",
                   "\"%1%\" is not the address of a service, such as \"https://items.example.org/\".",
                   Strings::widen(uri)));
    if (url.scheme() == "http" && !isOfThisMachine(url))
        refuse(Kind::BadRequest,
               localizedFormat("ItemhubUnprotected",
                               "\"%1%\" is not protected: others could listen. Use an address with https.",
                               Strings::widen(url.host().toStdString())));
    Access access;
    access.customer = QUrlQuery(url).queryItemValue("customer", QUrl::FullyDecoded).toStdString();
    url.setQuery(QString());
    url.setFragment(QString());
    if (!url.path().endsWith('/'))
        url.setPath(url.path() + '/');
    access.address =
        (isTracker ? kTracker + url.toString(QUrl::FullyEncoded) : url.toString(QUrl::FullyEncoded))
            .toStdString();
    return access;
}

bool SignIn::with(const Access& access, bool keep, bool mayBeAway)
try {
    assertMainThread();
    refuseIfDisabled();
    ItemTransport& way = transport();
    const std::string key = keyOf(access.address, access.customer);
    const auto keeper = [&way, key, keep](const Access& renewed) {
        if (keep)
            way.keep(key, renewed);
    };
    const std::shared_ptr<ItemStore> store = way.store(access, keeper);
    Session::Facts facts;
    facts.address = access.address;
    bool isAway = false;
    runBeside(title(), [&](const Watch& watch) {
        try {
            facts.account = store->account(watch);
        } catch (const Web::ConnectionException&) {
            if (!mayBeAway)
                throw;
            isAway = true;
        }
        if (keep && !isAway)
            way.keep(key, access);
    });
    if (isAway)
        facts.account.name = Strings::narrow(ItemhubOptionGroup::get()->account());
    if (facts.account.customer.empty())
        facts.account.customer = access.customer;
    facts.name = Places::nameOf(facts.address, facts.account.customer, facts.account.name);
    facts.isKept = keep;
    rememberSession(facts);
    begin(store, facts, !isAway);
    return true;
} catch (const ItemStore::Cancelled&) {
    return false;
}

std::optional<Access> SignIn::byPassword(const std::string& address, const std::string& customer,
                                         const std::string& account, const std::string& password)
try {
    refuseIfDisabled();
    const Access where = whereIs(address, customer);
    std::optional<Access> access;
    runBeside(title(), [&, &way = transport()](const Watch& watch) {
        access = way.signInByPassword(where, account, password, watch);
    });
    return access;
} catch (const ItemStore::Cancelled&) {
    return std::nullopt;
}

std::optional<Access> SignIn::byBrowser(const std::string& address, const std::string& customer,
                                        const std::function<bool(const std::string&)>& open)
try {
    assertMainThread();
    refuseIfDisabled();
    const Access where = whereIs(address, customer);
    std::optional<Access> access;
    MainThreadTurn turn;
    const auto openHere = [&](const std::string& page) { return turn.ask([&] { return open(page); }); };
    runBeside(
        localized("ItemhubWaitingForBrowser", "Waiting for the sign-in in the browser"),
        [&, &way = transport()](const Watch& watch) { access = way.signInByBrowser(where, openHere, watch); },
        &turn);
    return access;
} catch (const ItemStore::Cancelled&) {
    return std::nullopt;
}

bool SignIn::toOwnService()
try {
    assertMainThread();
    refuseIfDisabled();
    // It starts up while the client's libraries are loaded.
    OwnService::get().launch();
    ItemTransport& way = transport();
    std::shared_ptr<ItemStore> store;
    Session::Facts facts;
    facts.name = kOwnAccount;
    facts.isOwn = facts.isKept = true;
    runBeside(localized("ItemhubStarting", "Starting the lifecycle service"), [&](const Watch& watch) {
        store = way.store(OwnService::get().start(watch), {});
        facts.account = store->account(watch);
    });
    rememberSession(facts);
    begin(store, facts, true);
    return true;
} catch (const ItemStore::Cancelled&) {
    return false;
}

void SignIn::reviveOwnService()
try {
    if (Session::get().facts().isOwn && !OwnService::get().isAlive())
        toOwnService();
} catch (const std::exception&) {
    ItemhubUtilities::get()->fireErrorMessage(ItemhubUtilities::currentFailure());
}

bool SignIn::canResume()
{
    const ItemhubOptionGroup* options = ItemhubOptionGroup::get();
    return !ItemhubUtilities::get()->ItemhubDisabled() &&
           (std::getenv("QUILLET_ITEMHUB_TOKEN_FILE") || options->ownService() || options->kept());
}

bool SignIn::resume()
{
    assertMainThread();
    if (!canResume())
        return false;
    if (const std::optional<Access> access = accessOfTokenFile())
        return with(*access, false);
    if (ItemhubOptionGroup::get()->ownService())
        return toOwnService();
    const std::optional<Access> kept = ofKeyring();
    return kept && with(*kept, true, true);
}

void SignIn::to(std::shared_ptr<ItemStore> store, const std::string& name)
{
    assertMainThread();
    refuseIfDisabled();
    Session::Facts facts;
    facts.name = Places::nameOf(name, {}, {});
    runBeside(title(), [&](const Watch& watch) { facts.account = store->account(watch); });
    begin(store, facts, true);
}

void SignIn::out()
{
    assertMainThread();
    const Session::Facts facts = Session::get().facts();
    UploadQueue::get().stop();
    EventListener::get().stop();
    const std::shared_ptr<ItemStore> store = Session::get().end();
    if (!store)
        return;
    ItemhubOptionGroup::get()->kept(false);
    ItemhubOptionGroup::get()->ownService(false);
    tellSession();
    runBeside(localized("ItemhubSigningOut", "Signing out of the lifecycle service"), [&](const Watch&) {
        if (!facts.isOwn)
            store->signOut();
        if (facts.isKept && !facts.isOwn)
            transport().forget(keyOf(facts.address, facts.account.customer));
    });
    if (facts.isOwn)
        OwnService::get().stop();
}

std::string SignIn::newKey()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
}

} // namespace Vs::Itemhub
