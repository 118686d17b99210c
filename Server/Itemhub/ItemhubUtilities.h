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

/// The client of the lifecycle service. Requests return with the response; on the main thread the window
/// stays responsive meanwhile, progress is shown, and Esc cancels.
///
/// Unless stated otherwise, failures throw Corvane::Itemstore::WebServices::PayloadException,
/// ItemhubException or ConnectionException, each with a text for the user. If nobody is signed in, that is an
/// ItemhubException of the kind NotSignedIn. A cancelled request returns an empty value, path or list.
///
/// Main thread only, unless stated otherwise.
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
    /// The service's trade name with its trademark sign, the same in every language.
    [[nodiscard]] static std::wstring getItemhub_TM();
    /// The notification centre's identifier for notifications from notifyItemhubErrorMessage.
    [[nodiscard]] static std::wstring notificationClientID();

    /// @name Items
    /// Functions that only query may be called from any thread.
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
    /// The file name of an attachment, given the address that downloadAttachment takes.
    [[nodiscard]] std::wstring attachmentName(const std::wstring& uri) const;

    /// Creates an item, linked to another one unless `linkedItemId` is 0, and returns the path of a local
    /// file that doesn't exist yet: a document saved there belongs to the item. An item in workspace 0 goes
    /// to the first one in which the account may write.
    [[nodiscard]] std::wstring addNewItem(const DocumentType* type, long workspaceId,
                                          long linkedItemWorkspaceId, long linkedItemId,
                                          const std::wstring& name, const std::wstring& notes) const;

    /// Matches word prefixes; best match first. Any thread; on threads other than the main one, `watch`
    /// cancels.
    [[nodiscard]] std::vector<Item> search(const std::wstring& text, const Network::Watch& watch = {}) const;

    [[nodiscard]] std::vector<Comment> getComments(const Item& item) const;
    Comment addComment(const Item& item, const std::wstring& text) const;

    /// Newest bookmark first. Any thread; doesn't throw: a failure is reported by fireErrorMessage, and
    /// the list is empty.
    [[nodiscard]] std::vector<boost::shared_ptr<ItemhubFavoriteItem>> getFavorites() const;
    /// ItemhubEventSite receives favoritesChanged.
    void setFavorite(int itemId, bool isFavorite) const;
    /// @}

    /// @name Documents
    /// @{

    /// Downloads the newest version of an attachment, and returns the path of the file. The address may
    /// end with ".xml". A version that is here already, by its hash, isn't fetched again; a file with changes
    /// that haven't been uploaded yet is returned as it is. Empty if there is no version yet, if nobody is
    /// signed in, or if the user cancelled.
    [[nodiscard]] std::wstring downloadAttachment(const std::wstring& uri) const;

    /// What a document's file represents at the service.
    struct DocumentItem
    {
        std::int64_t workspaceId = 0;
        std::int64_t itemId = 0;
        std::int64_t attachmentId = 0; ///< 0 until the first version has arrived.
        std::int64_t version = 0;      ///< The version it is based on; 0 for none.
        std::string account;           ///< Its owner; another account's files are uploaded when it signs in.
    };
    /// Whether saving the document makes a version of an item. Also works while nobody is signed in.
    [[nodiscard]] bool isItemhubDocument(Document* document) const;
    [[nodiscard]] std::optional<DocumentItem> itemOf(const Path& file) const;
    /// Whether it belongs to the signed-in account. Any thread.
    [[nodiscard]] bool isOfAccount(const DocumentItem& item) const;
    /// Labels the version that the file's next save makes; otherwise versions have no label.
    void setCheckinDescription(const Path& file, const std::wstring& label) const;
    /// Where the files of items that were downloaded or created are kept. Nothing else belongs in that
    /// folder.
    [[nodiscard]] static Path folder();
    /// @}

    /// @name Uploads
    /// Every save of an item's document becomes an entry in a queue on disk before the save returns, and
    /// is uploaded in the background, one after the other. If the service is unreachable, uploads are retried
    /// with increasing pauses, as are those that a kill interrupted. Nothing is ever sent twice.
    /// @{

    /// Everything that isn't at the service yet, oldest first.
    [[nodiscard]] std::vector<UploadQueuedFileInfo> pendingUploads() const;
    /// The one for a document's newest save; nothing if everything is at the service.
    [[nodiscard]] std::optional<UploadQueuedFileInfo> pendingUpload(const Path& document) const;
    /// Those that failed and await a decision by the user.
    void getAllRecoverFiles(std::vector<UploadQueuedFileInfo>& files) const;
    /// Retries a failed upload, with the later ones of the same document; false if it no longer exists.
    bool recoverQueuedBackgroundUpload(const Path& uploadQueuedFile);
    /// Removes a file from the list of failed ones. With `withContent` the upload is abandoned and the
    /// queue's copy removed, unless it is being uploaded again; the document's own file always stays.
    /// ItemhubEventSite receives onRecoveryFileDeleted.
    void deleteARecoveryFile(const std::wstring& uploadQueuedFile, bool withContent);
    /// Ends a retry pause now.
    void uploadNow() const;
    /// Waits until nothing that could be uploaded is uploading or waiting, or until the time is up; true
    /// if everything has arrived. Shows progress, and Esc ends the wait.
    bool waitForUploads(std::chrono::milliseconds time) const;

    /// Attaches a copy of a file to a document's item, as "name (recovery).vlra"; returns the address for
    /// downloadAttachment. Empty if the document doesn't belong to an item or nobody is signed in.
    [[nodiscard]] std::wstring attachSnapshot(const Path& document, const Path& snapshot) const;
    /// Attaches a copy of any file to a document's item, under its own name. Otherwise as above.
    [[nodiscard]] std::wstring attachFile(const Path& document, const Path& file,
                                          const std::wstring& name) const;
    /// @}

    /// @name Notifications
    /// @{

    /// Reports a failure to the user: ItemhubEventSite receives onErrorMessage, always on the main
    /// thread. Any thread.
    void fireErrorMessage(const std::wstring& message) const;
    /// Posts a failure to the notification centre.
    void notifyItemhubErrorMessage(const std::wstring& message) const;
    /// The text for the user of the exception being handled: what() for this service's exceptions, a
    /// general one for others. Call it in a handler.
    [[nodiscard]] static std::wstring currentFailure();
    /// @}

    /// @name For the program
    /// @{

    /// Results of other threads are queued here for the main thread, which runs them when it has time.
    [[nodiscard]] static Tasks& results();
    /// The notification centre; takes title, text and notificationClientID(); null for none.
    using Notifier = std::function<void(const std::wstring& title, const std::wstring& text,
                                        const std::wstring& clientID)>;
    static void notifier(Notifier notifier);
    /// Ends all threads and the program's own service. Pending uploads stay on disk.
    void stop();
    /// @}

private:
    ItemhubUtilities();
    ~ItemhubUtilities();
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Vs
