#include "Server/Itemhub/ItemhubUtilities.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Server/Itemhub/Private/Ask.h"
#include "Server/Itemhub/Private/OwnService.h"
#include "Server/Itemhub/Private/Places.h"
#include "Server/Itemhub/Private/Session.h"
#include "Server/Itemhub/Private/SignIn.h"
#include "Server/Itemhub/Private/Texts.h"

#include <boost/make_shared.hpp>

#include <tuple>

namespace Vs {

using Itemhub::ask;
using Itemhub::ItemStore;
using Itemhub::localized;
using Itemhub::localizedFormat;
using Itemhub::Session;
using Itemhub::Watch;
namespace Web = Corvane::Itemstore::WebServices;

namespace {

/// The most that is shown of a search.
constexpr int kMostResults = 50;

std::function<bool()>& edition()
{
    static std::function<bool()> asked;
    return asked;
}

ItemhubUtilities::Notifier& installedNotifier()
{
    static ItemhubUtilities::Notifier notifier;
    return notifier;
}

std::wstring asking()
{
    return localized("ItemhubAsking", "Asking the lifecycle service");
}

} // namespace

struct ItemhubUtilities::Data
{
};

ItemhubUtilities* ItemhubUtilities::get()
{
    // The results come first into being, so that they are there as long as what posts to them.
    std::ignore = results();
    static ItemhubUtilities client;
    return &client;
}

ItemhubUtilities::ItemhubUtilities() : m_data(std::make_unique<Data>()) {}

ItemhubUtilities::~ItemhubUtilities() = default;

std::wstring ItemhubUtilities::getItemhub_TM()
{
    return L"Itemhub\u2122";
}

std::wstring ItemhubUtilities::notificationClientID()
{
    return L"ItemhubNotifyError";
}

bool ItemhubUtilities::ItemhubDisabled() const
{
    return ItemhubOptionGroup::get()->itemhubDisabled() || (edition() && edition()());
}

void ItemhubUtilities::editionDisables(std::function<bool()> asked)
{
    edition() = std::move(asked);
}

bool ItemhubUtilities::isAuthenticated() const
{
    return Session::get().store() != nullptr;
}

bool ItemhubUtilities::authenticateWithToken(const std::string& uri, const std::wstring& tenant,
                                             const std::wstring& token, const std::wstring& tokenSecret,
                                             const std::wstring& sessionHandle,
                                             const std::wstring& consumerKey,
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
        fireErrorMessage(currentFailure());
        return false;
    }
}

bool ItemhubUtilities::signIn(const Itemhub::Access& access, bool keep)
{
    return Itemhub::SignIn::with(access, keep);
}

bool ItemhubUtilities::signInWithPassword(const std::string& address, const std::string& customer,
                                          const std::string& account, const std::string& password, bool keep)
{
    const auto access = Itemhub::SignIn::byPassword(address, customer, account, password);
    return access && signIn(*access, keep);
}

bool ItemhubUtilities::signInByBrowser(const std::string& address, const std::string& customer, bool keep,
                                       const std::function<bool(const std::string&)>& open)
{
    const auto access = Itemhub::SignIn::byBrowser(address, customer, open);
    return access && signIn(*access, keep);
}

bool ItemhubUtilities::signInToOwnService()
{
    return Itemhub::SignIn::toOwnService();
}

bool ItemhubUtilities::resume()
{
    return Itemhub::SignIn::resume();
}

void ItemhubUtilities::signInTo(std::shared_ptr<ItemStore> store, const std::string& name)
{
    Itemhub::SignIn::to(std::move(store), name);
}

void ItemhubUtilities::signOut()
{
    Itemhub::SignIn::out();
}

std::wstring ItemhubUtilities::accountName() const
{
    return Strings::widen(Session::get().facts().account.name);
}

std::wstring ItemhubUtilities::customer() const
{
    return Strings::widen(Session::get().facts().account.customer);
}

std::string ItemhubUtilities::serviceAddress() const
{
    return Session::get().facts().address;
}

bool ItemhubUtilities::isOwnService() const
{
    return Session::get().facts().isOwn;
}

bool ItemhubUtilities::isOnline() const
{
    return Session::get().isOnline();
}

bool ItemhubUtilities::isKept() const
{
    return Session::get().facts().isKept;
}

ItemhubUtilities::Workspace ItemhubUtilities::getWorkspaceById(int id) const
{
    return ask(asking(), [id](ItemStore& store, const Watch& watch) { return store.workspace(id, watch); });
}

std::vector<ItemhubUtilities::Workspace> ItemhubUtilities::getWorkspaces() const
{
    return ask(asking(), [](ItemStore& store, const Watch& watch) { return store.workspaces(watch); });
}

ItemhubUtilities::Item ItemhubUtilities::getItemById(const Workspace& workspace, int id) const
{
    Item item = getItemById(id);
    if (item.id() == id && item.workspaceId() != workspace.id())
        throw Web::ItemhubException(
            Web::ItemhubException::Kind::NotFound,
            Strings::narrow(localizedFormat("ItemhubNotOfWorkspace",
                                            "The item %1% is not in the workspace \"%2%\".", id,
                                            Strings::widen(workspace.name()))));
    return item;
}

ItemhubUtilities::Item ItemhubUtilities::getItemById(int id) const
{
    return ask(asking(), [id](ItemStore& store, const Watch& watch) { return store.item(id, watch); });
}

std::vector<ItemhubUtilities::Item> ItemhubUtilities::getItems(const Workspace& workspace) const
{
    return ask(asking(), [&](ItemStore& store, const Watch& watch) { return store.items(workspace, watch); });
}

std::vector<ItemhubUtilities::Attachment> ItemhubUtilities::getItemAttachments(const Workspace&,
                                                                               const Item& item)
{
    return ask(asking(),
               [&](ItemStore& store, const Watch& watch) { return store.attachments(item.id(), watch); });
}

std::vector<ItemhubUtilities::Version> ItemhubUtilities::getVersions(const Attachment& attachment) const
{
    return ask(asking(),
               [&](ItemStore& store, const Watch& watch) { return store.versions(attachment.id(), watch); });
}

std::vector<ItemhubUtilities::Item> ItemhubUtilities::search(const std::wstring& text,
                                                             const Watch& given) const
{
    return ask(localized("ItemhubSearching", "Searching the lifecycle service"),
               [&](ItemStore& store, const Watch& watch) {
                   return store.search(Strings::narrow(text), kMostResults, given.progress ? given : watch);
               });
}

std::vector<ItemhubUtilities::Comment> ItemhubUtilities::getComments(const Item& item) const
{
    return ask(asking(),
               [&](ItemStore& store, const Watch& watch) { return store.comments(item.id(), watch); });
}

ItemhubUtilities::Comment ItemhubUtilities::addComment(const Item& item, const std::wstring& text) const
{
    const std::string key = Itemhub::SignIn::newKey();
    return ask(localized("ItemhubCommenting", "Sending a comment to the lifecycle service"),
               [&](ItemStore& store, const Watch& watch) {
                   return store.addComment(item.id(), Strings::narrow(text), key, watch);
               });
}

std::vector<boost::shared_ptr<ItemhubFavoriteItem>> ItemhubUtilities::getFavorites() const
try {
    std::vector<boost::shared_ptr<ItemhubFavoriteItem>> favorites;
    for (const Item& item :
         ask(asking(), [](ItemStore&store, const Watch&watch) { return store.favourites(watch); }))
        favorites.push_back(boost::make_shared<ItemhubFavoriteItem>(item.id(), item.workspaceId(),
                                                                    Strings::widen(item.caption())));
    return favorites;
} catch (...) {
    fireErrorMessage(currentFailure());
    return {};
}

void ItemhubUtilities::setFavorite(int itemId, bool isFavorite) const
{
    const bool done = ask(asking(), [=](ItemStore& store, const Watch& watch) {
        store.favourite(itemId, isFavorite, watch);
        return true;
    });
    if (!done)
        return;
    ItemhubEvent event;
    ItemhubEventSource::get()->fireFavoritesChanged(&event);
}

std::wstring ItemhubUtilities::addNewItem(const DocumentType* type, long workspaceId, long, long linkedItemId,
                                          const std::wstring& name, const std::wstring& notes) const
{
    require(type != nullptr, "a new item's document has a type");
    const std::string key = Itemhub::SignIn::newKey();
    const Itemhub::NewItem wanted{workspaceId, Strings::narrow(name), Strings::narrow(notes), linkedItemId};
    const Item made = ask(
        asking(), [&](ItemStore& store, const Watch& watch) { return store.addItem(wanted, key, watch); });
    if (made.id() == 0)
        return {};
    const Path folder = Itemhub::Places::account(Session::get().facts().name) / "files" /
                        ("item-" + std::to_string(made.id()));
    OwnFiles::makeFolder(folder);
    return (folder / (made.caption() + Strings::narrow(type->extension()))).wstring();
}

std::wstring ItemhubUtilities::downloadAttachment(const std::wstring& uri) const
{
    if (!isAuthenticated())
        return {};
    const Path files = Itemhub::Places::account(Session::get().facts().name) / "files";
    return ask(localized("ItemhubDownloading", "Downloading from the lifecycle service"),
               [&](ItemStore& store, const Watch& watch) {
                   const Itemhub::Content content = store.content(Strings::narrow(uri), watch);
                   const Path folder =
                       files / std::to_string(content.attachmentId) / std::to_string(content.version);
                   OwnFiles::makeFolder(folder);
                   store.download(content, (folder / content.file).string(), watch);
                   return (folder / content.file).wstring();
               });
}

bool ItemhubUtilities::isItemhubDocument(Document* document) const
{
    return document && document->isOnDisk() && itemOf(document->path());
}

std::optional<ItemhubUtilities::DocumentItem> ItemhubUtilities::itemOf(const Path&) const
{
    return std::nullopt;
}

void ItemhubUtilities::setCheckinDescription(const Path&, const std::wstring&) const {}

ItemhubUtilities::Path ItemhubUtilities::folder()
{
    return Itemhub::Places::root();
}

std::vector<UploadQueuedFileInfo> ItemhubUtilities::pendingUploads() const
{
    return {};
}

std::optional<UploadQueuedFileInfo> ItemhubUtilities::pendingUpload(const Path&) const
{
    return std::nullopt;
}

void ItemhubUtilities::getAllRecoverFiles(std::vector<UploadQueuedFileInfo>& files) const
{
    files.clear();
}

bool ItemhubUtilities::recoverQueuedBackgroundUpload(const Path&)
{
    return false;
}

void ItemhubUtilities::deleteARecoveryFile(const std::wstring&, bool)
{
    ItemhubEvent event;
    ItemhubEventSource::get()->fireRecoveryFileDeleted(&event);
}

void ItemhubUtilities::uploadNow() const {}

bool ItemhubUtilities::waitForUploads(std::chrono::milliseconds) const
{
    return true;
}

std::wstring ItemhubUtilities::attachSnapshot(const Path&, const Path&) const
{
    return {};
}

void ItemhubUtilities::stop()
{
    std::ignore = Session::get().end();
    Itemhub::OwnService::get().stop();
}

void ItemhubUtilities::fireErrorMessage(const std::wstring& message) const
{
    const auto tell = [message] {
        ItemhubErrorEvent event(message);
        ItemhubEventSource::get()->fireErrorMessage(&event);
    };
    if (Detail::onMainThread())
        tell();
    else
        results().post(tell);
}

void ItemhubUtilities::notifyItemhubErrorMessage(const std::wstring& message) const
{
    assertMainThread();
    if (installedNotifier())
        installedNotifier()(localized("ItemhubErrorTitle", "Lifecycle Service"), message,
                            notificationClientID());
}

void ItemhubUtilities::notifier(Notifier notifier)
{
    installedNotifier() = std::move(notifier);
}

std::wstring ItemhubUtilities::currentFailure()
{
    try {
        throw;
    } catch (const Exception& error) {
        return error.message();
    } catch (const std::exception& error) {
        return localizedFormat("ItemhubFailed", "The lifecycle service failed: %1%",
                               Strings::widen(error.what()));
    }
}

Tasks& ItemhubUtilities::results()
{
    static auto* const tasks = new Tasks;
    return *tasks;
}

} // namespace Vs
