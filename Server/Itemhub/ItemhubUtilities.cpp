#include "Server/Itemhub/ItemhubUtilities.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/Private/Ask.h"
#include "Server/Itemhub/Private/Documents.h"
#include "Server/Itemhub/Private/EventListener.h"
#include "Server/Itemhub/Private/OwnService.h"
#include "Server/Itemhub/Private/Places.h"
#include "Server/Itemhub/Private/SaveListener.h"
#include "Server/Itemhub/Private/Session.h"
#include "Server/Itemhub/Private/SignIn.h"
#include "Server/Itemhub/Private/Texts.h"
#include "Server/Itemhub/Private/UploadQueue.h"
#include "Server/Itemhub/Private/WorkFiles.h"

#include <boost/make_shared.hpp>

#include <set>
#include <thread>
#include <tuple>

namespace Vs {

using Itemhub::ask;
using Itemhub::ItemStore;
using Itemhub::localized;
using Itemhub::localizedFormat;
using Itemhub::Session;
using Itemhub::UploadQueue;
using Itemhub::Watch;
namespace Web = Corvane::Itemstore::WebServices;

namespace {

/// The maximum number of search results shown.
constexpr int kMostResults = 50;

ItemhubUtilities::Notifier& installedNotifier()
{
    static ItemhubUtilities::Notifier notifier;
    return notifier;
}

std::wstring asking()
{
    return localized("ItemhubAsking", "Asking the lifecycle service");
}

/// What `attach` returns for the item of one of the signed-in user's documents; empty for any other
/// document.
std::wstring
attached(const boost::filesystem::path& document,
         const std::function<std::string(ItemStore&, const Itemhub::WorkFile&, const Watch&)>& attach)
{
    const auto work = Itemhub::WorkFiles::get().find(document);
    if (!work || !ItemhubUtilities::get()->isAuthenticated() || work->account != Session::get().facts().name)
        return {};
    return ask(
        localized("ItemhubUploading", "Uploading to the lifecycle service"),
        [&](ItemStore& store, const Watch& watch) { return Strings::widen(attach(store, *work, watch)); });
}

} // namespace

struct ItemhubUtilities::Data
{
    Itemhub::SaveListener saves;
};

ItemhubUtilities* ItemhubUtilities::get()
{
    // The results are created first, so that they outlive whatever posts to them.
    std::ignore = results();
    static ItemhubUtilities client;
    return &client;
}

ItemhubUtilities::ItemhubUtilities() : m_data(std::make_unique<Data>()) {}

ItemhubUtilities::~ItemhubUtilities()
{
    stop();
}

std::wstring ItemhubUtilities::getItemhub_TM()
{
    return L"Itemhub\u2122";
}

std::wstring ItemhubUtilities::notificationClientID()
{
    return L"ItemhubNotifyError";
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

std::wstring ItemhubUtilities::attachmentName(const std::wstring& uri) const
{
    return ask(asking(), [&](ItemStore& store, const Watch& watch) {
        return Strings::widen(store.content(Strings::narrow(uri), watch).file);
    });
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
        favorites.push_back(
            boost::make_shared<ItemhubFavoriteItem>(item.id(), Strings::widen(item.caption())));
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
    const std::string key = Itemhub::SignIn::newKey(), account = Session::get().facts().name;
    const std::string extension = Strings::narrow(type->extension());
    const Itemhub::NewItem wanted{workspaceId, Strings::narrow(name), Strings::narrow(notes), linkedItemId};
    return ask(localized("ItemhubMakingItem", "Creating an item on the lifecycle service"),
               [&](ItemStore& store, const Watch& watch) {
                   return Itemhub::Documents::addNewItem(store, account, wanted, key, extension,
                                                         type->identifier(), watch)
                       .wstring();
               });
}

std::wstring ItemhubUtilities::downloadAttachment(const std::wstring& uri) const
{
    if (!isAuthenticated())
        return {};
    const std::string account = Session::get().facts().name;
    // A snapshot: the download runs concurrently.
    std::set<Path> open;
    if (const DocumentMgr* documents = DocumentMgr::get())
        for (unsigned i = 0; i < documents->documents(); ++i)
            open.insert(Path(documents->document(i)->path()).lexically_normal());
    return ask(localized("ItemhubDownloading", "Downloading from the lifecycle service"),
               [&](ItemStore& store, const Watch& watch) {
                   return Itemhub::Documents::download(
                              store, account, Strings::narrow(uri),
                              [&](const Path& file) { return open.contains(file); }, watch)
                       .wstring();
               });
}

bool ItemhubUtilities::isItemhubDocument(Document* document) const
{
    return document && document->isOnDisk() && itemOf(document->path());
}

std::optional<ItemhubUtilities::DocumentItem> ItemhubUtilities::itemOf(const Path& file) const
{
    const auto work = Itemhub::WorkFiles::get().find(file);
    if (!work)
        return std::nullopt;
    return DocumentItem{work->workspaceId, work->itemId, work->attachmentId, work->version, work->account};
}

bool ItemhubUtilities::isOfAccount(const DocumentItem& item) const
{
    return isAuthenticated() && item.account == Session::get().facts().name;
}

void ItemhubUtilities::setCheckinDescription(const Path& file, const std::wstring& label) const
{
    m_data->saves.label(file, Strings::narrow(label));
}

ItemhubUtilities::Path ItemhubUtilities::folder()
{
    return Itemhub::Places::root();
}

std::vector<UploadQueuedFileInfo> ItemhubUtilities::pendingUploads() const
{
    std::vector<UploadQueuedFileInfo> pending;
    for (const Itemhub::QueueEntry& entry : UploadQueue::get().entries())
        pending.push_back(entry.info());
    return pending;
}

std::optional<UploadQueuedFileInfo> ItemhubUtilities::pendingUpload(const Path& document) const
{
    std::optional<UploadQueuedFileInfo> newest;
    for (const Itemhub::QueueEntry& entry : UploadQueue::get().entries())
        if (entry.document == document.lexically_normal())
            newest = entry.info();
    return newest;
}

void ItemhubUtilities::getAllRecoverFiles(std::vector<UploadQueuedFileInfo>& files) const
{
    using State = UploadQueuedFileInfo::State;
    files = pendingUploads();
    std::erase_if(files, [](const UploadQueuedFileInfo& file) {
        return file.state() != State::Failed && file.state() != State::Outdated;
    });
}

bool ItemhubUtilities::recoverQueuedBackgroundUpload(const Path& uploadQueuedFile)
{
    return UploadQueue::get().retry(uploadQueuedFile);
}

void ItemhubUtilities::deleteARecoveryFile(const std::wstring& uploadQueuedFile, bool withContent)
{
    assertMainThread();
    if (withContent)
        UploadQueue::get().giveUp(Path(uploadQueuedFile));
    ItemhubEvent event;
    ItemhubEventSource::get()->fireRecoveryFileDeleted(&event);
}

void ItemhubUtilities::uploadNow() const
{
    UploadQueue::get().wake();
}

bool ItemhubUtilities::waitForUploads(std::chrono::milliseconds time) const
{
    try {
        Itemhub::runBeside(localized("ItemhubUploading", "Uploading to the lifecycle service"),
                           [&](const Watch& watch) {
                               constexpr std::chrono::milliseconds kLook{20};
                               const auto end = std::chrono::steady_clock::now() + time;
                               while (UploadQueue::get().isBusy() && watch.goesOn() &&
                                      std::chrono::steady_clock::now() < end)
                                   std::this_thread::sleep_for(kLook);
                           });
    } catch (const ItemStore::Cancelled&) {
        // Arrived uploads are reported below.
    }
    return UploadQueue::get().entries().empty();
}

std::wstring ItemhubUtilities::attachSnapshot(const Path& document, const Path& snapshot) const
{
    return attached(document, [&](ItemStore& store, const Itemhub::WorkFile& work, const Watch& watch) {
        return Itemhub::Documents::attachSnapshot(store, work, snapshot, watch);
    });
}

std::wstring ItemhubUtilities::attachFile(const Path& document, const Path& file,
                                          const std::wstring& name) const
{
    return attached(document, [&](ItemStore& store, const Itemhub::WorkFile& work, const Watch& watch) {
        return Itemhub::Documents::attach(store, work.itemId, file, Strings::narrow(name), "File", watch);
    });
}

void ItemhubUtilities::stop()
{
    UploadQueue::get().stop();
    Itemhub::EventListener::get().stop();
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
