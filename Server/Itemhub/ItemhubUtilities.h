#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/ItemhubFavoriteItem.h"
#include "Server/Itemhub/ItemhubSession.h"
#include "Server/Itemhub/UploadQueuedFileInfo.h"

#include <boost/filesystem/path.hpp>
#include <boost/shared_ptr.hpp>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vs {

class Document;
class DocumentType;
class Tasks;

/// The client of the lifecycle service. What is asked of the service returns with its answer; on the main
/// thread the window lives meanwhile, progress is shown, and Esc cancels.
///
/// Unless another way is told, what fails throws Corvane::Itemstore::WebServices::PayloadException,
/// ItemhubException or ConnectionException, each with a text for the person. With nobody signed in that is an
/// ItemhubException of the kind NotSignedIn. A cancelled question answers with nothing: an empty
/// value, path or list.
///
/// Main thread only, but for what is said to be for any thread.
class ItemhubUtilities : public ItemhubSession
{
public:
    using Path = boost::filesystem::path;
    using Workspace = Corvane::Itemstore::WebServices::Workspace;
    using Item = Corvane::Itemstore::WebServices::Item;
    using Attachment = Corvane::Itemstore::WebServices::Attachment;
    using Version = Corvane::Itemstore::WebServices::Version;
    using Comment = Corvane::Itemstore::WebServices::Comment;

    /// Never null. Any thread.
    [[nodiscard]] static ItemhubUtilities* get();
    /// The service's trade name with its sign, the same in every language.
    [[nodiscard]] static std::wstring getItemhub_TM();
    /// By which the notification centre knows what comes from notifyItemhubErrorMessage.
    [[nodiscard]] static std::wstring notificationClientID();

    /// @name Items
    /// What only asks for something here may be called from any thread.
    /// @{
    [[nodiscard]] Workspace getWorkspaceById(int id) const;
    [[nodiscard]] std::vector<Workspace> getWorkspaces() const;
    /// NotFound if the item isn't one of that workspace.
    [[nodiscard]] Item getItemById(const Workspace& workspace, int id) const;
    /// An item of any workspace.
    [[nodiscard]] Item getItemById(int id) const;
    [[nodiscard]] std::vector<Item> getItems(const Workspace& workspace) const;
    [[nodiscard]] std::vector<Attachment> getItemAttachments(const Workspace& workspace, const Item& item);
    [[nodiscard]] std::vector<Version> getVersions(const Attachment& attachment) const;
    /// What the file of an attachment is called, by the address that downloadAttachment takes.
    [[nodiscard]] std::wstring attachmentName(const std::wstring& uri) const;

    /// Makes an item, linked to another one unless `linkedItemId` is 0, and gives the path of a local file,
    /// which isn't there yet: a document that is saved there is the item's. An item in the workspace 0 goes
    /// to the first one in which the account may write.
    [[nodiscard]] std::wstring addNewItem(const DocumentType* type, long workspaceId,
                                          long linkedItemWorkspaceId, long linkedItemId,
                                          const std::wstring& name, const std::wstring& notes) const;

    /// By the beginnings of words, the best first. Any thread; of other threads than the main one, `watch`
    /// cancels.
    [[nodiscard]] std::vector<Item> search(const std::wstring& text, const Network::Watch& watch = {}) const;

    [[nodiscard]] std::vector<Comment> getComments(const Item& item) const;
    Comment addComment(const Item& item, const std::wstring& text) const;

    /// The newest bookmark first. Any thread, and it doesn't throw: a failure is told by fireErrorMessage,
    /// and the list is empty.
    [[nodiscard]] std::vector<boost::shared_ptr<ItemhubFavoriteItem>> getFavorites() const;
    /// ItemhubEventSite hears favoritesChanged.
    void setFavorite(int itemId, bool isFavorite) const;
    /// @}

    /// @name Documents
    /// @{

    /// Brings the newest version of an attachment to this machine, and gives the path of the file. An address
    /// is taken with or without ".xml" at its end. What is here already, by its hash, isn't fetched again; a
    /// file with changes that aren't at the service yet is given as it is. Empty if there is no version yet,
    /// if nobody is signed in, or if the user cancelled.
    [[nodiscard]] std::wstring downloadAttachment(const std::wstring& uri) const;

    /// What a document's file is at the service.
    struct DocumentItem
    {
        std::int64_t workspaceId = 0;
        std::int64_t itemId = 0;
        std::int64_t attachmentId = 0; ///< 0 until the first version has arrived.
        std::int64_t version = 0;      ///< The one that the file goes back to; 0 for none.
        std::string account;           ///< Whose; another account's files upload when it signs in.
    };
    /// Whether saving the document makes a version of an item. Also while nobody is signed in.
    [[nodiscard]] bool isItemhubDocument(Document* document) const;
    [[nodiscard]] std::optional<DocumentItem> itemOf(const Path& file) const;
    /// Whether it is of the account that is signed in. Any thread.
    [[nodiscard]] bool isOfAccount(const DocumentItem& item) const;
    /// Labels the version that the next save of that file makes. Without it, versions have none.
    void setCheckinDescription(const Path& file, const std::wstring& label) const;
    /// Where an item's file lies that was downloaded or made: nothing else belongs into that folder.
    [[nodiscard]] static Path folder();
    /// @}

    /// @name Uploads
    /// Every save of an item's document becomes an entry of a queue on the disk before the save returns, and
    /// is uploaded in the background, one after the other. What can't be reached is tried again, after pauses
    /// that grow; so is what a kill interrupted. Nothing is ever sent twice.
    /// @{

    /// All that isn't at the service yet, the oldest first.
    [[nodiscard]] std::vector<UploadQueuedFileInfo> pendingUploads() const;
    /// Of a document's newest save; nothing if all of it is at the service.
    [[nodiscard]] std::optional<UploadQueuedFileInfo> pendingUpload(const Path& document) const;
    /// Those that failed, and wait for somebody's decision.
    void getAllRecoverFiles(std::vector<UploadQueuedFileInfo>& files) const;
    /// Uploads a failed one again, with those of the same document behind it; false if it isn't there any
    /// more.
    bool recoverQueuedBackgroundUpload(const Path& uploadQueuedFile);
    /// Takes a file off the list of failed ones. With `withContent` the upload is given up and the queue's
    /// copy removed, unless it is being uploaded again; the document's own file stays in any case.
    /// ItemhubEventSite hears onRecoveryFileDeleted.
    void deleteARecoveryFile(const std::wstring& uploadQueuedFile, bool withContent);
    /// Ends a pause now.
    void uploadNow() const;
    /// Waits until nothing is uploading or waiting that could be uploaded, or the time has passed; true if
    /// all has arrived. Shows progress, and Esc ends the wait.
    bool waitForUploads(std::chrono::milliseconds time) const;

    /// Attaches a copy of a file to the item of a document, as "name (recovery).vlra"; the address is what
    /// downloadAttachment takes. Empty if the document isn't an item's or nobody is signed in.
    [[nodiscard]] std::wstring attachSnapshot(const Path& document, const Path& snapshot) const;
    /// Attaches a copy of any file to the item of a document, under a name of its own. Otherwise as above.
    [[nodiscard]] std::wstring attachFile(const Path& document, const Path& file,
                                          const std::wstring& name) const;
    /// @}

    /// @name What is told
    /// @{

    /// Tells the user of a failure: ItemhubEventSite hears onErrorMessage. Any thread; of others than the
    /// main one, it is told there.
    void fireErrorMessage(const std::wstring& message) const;
    /// Puts a failure into the notification centre.
    void notifyItemhubErrorMessage(const std::wstring& message) const;
    /// The text for a person of an exception that is being handled: what() of one of this service, a general
    /// one of others. Call it in a handler.
    [[nodiscard]] static std::wstring currentFailure();
    /// @}

    /// @name For the program
    /// @{

    /// What threads found out waits here for the main thread, which runs it when it has time.
    [[nodiscard]] static Tasks& results();
    /// Who has a notification centre: takes title, text and notificationClientID(); null for nobody.
    using Notifier = std::function<void(const std::wstring& title, const std::wstring& text,
                                        const std::wstring& clientID)>;
    static void notifier(Notifier notifier);
    /// Ends all threads and the program's own service. What waits to be uploaded stays on the disk.
    void stop();
    /// @}

private:
    ItemhubUtilities();
    ~ItemhubUtilities();
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Vs
