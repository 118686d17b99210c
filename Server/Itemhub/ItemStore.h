#pragma once

#include "Server/Itemhub/WebServices.h"
#include "Server/Network/Watch.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Vs::Itemhub {

namespace Web = Corvane::Itemstore::WebServices;
using Network::Watch;

/// Who is signed in.
struct Account
{
    std::string name;
    std::string customer;
    std::string expiresAt; ///< Expiry of the token, in UTC; empty if it doesn't expire.
};

struct NewItem
{
    std::int64_t workspaceId = 0;
    std::string caption;
    std::string description;
    std::int64_t linkedItemId = 0; ///< 0 for none.
};

/// Where an attachment's newest content is.
struct Content
{
    std::int64_t attachmentId = 0;
    std::int64_t itemId = 0;
    std::int64_t workspaceId = 0;
    std::int64_t version = 0; ///< 0 if there is none yet.
    std::string file;         ///< Its name, sanitized to be a valid file name.
    std::string docType;
    std::string sha256;
    std::uint64_t size = 0;
    std::string address;
};

/// A version to be made. With neither an attachment nor a previous version, both are made in one step.
struct NewVersion
{
    std::int64_t itemId = 0;
    std::int64_t attachmentId = 0; ///< 0 if the attachment is new as well.
    std::string name;              ///< For a new attachment.
    std::string docType;           ///< For a new attachment.
    std::string upload;            ///< As returned by beginUpload; all bytes have been sent.
    std::string label;
    std::int64_t madeFrom = 0;
    std::string key; ///< Unique per version: repeating a request with it makes no second one.
};

struct MadeVersion
{
    std::int64_t attachmentId = 0;
    Web::Version version;
};

/// What happened in a workspace or to the account.
struct ItemEvent
{
    std::int64_t serial = 0;
    std::string kind; ///< For example "version.added", "favourite.removed".
    std::int64_t workspaceId = 0, itemId = 0, attachmentId = 0, version = 0; ///< 0 where not concerned.
    std::string account;                                                     ///< Who did it.
    std::string at;                                                          ///< In UTC.
    std::int64_t requestId = 0; ///< For "program.asked": the argument of takeRequest.
};

struct ItemEvents
{
    std::vector<ItemEvent> events;
    std::int64_t next = 0; ///< The serial to continue from.
};

/// What the system's page in the browser, its dashboard, asks the program to do. Whether that is allowed
/// is for the program to decide.
struct DashboardRequest
{
    std::int64_t id = 0;
    std::string command;                          ///< By its identifier.
    std::map<std::string, std::string> arguments; ///< By their names; numbers in decimal digits.
};

/// The outcome.
enum class DashboardAnswer {
    Done,
    Refused, ///< By the person.
    Failed
};

/// A system that keeps items, with the account that is signed in to it. Everything else in this folder is
/// independent of the system behind it.
///
/// Every function waits for the response, for at most a minute without receiving a byte, and throws
/// PayloadException, ItemhubException or ConnectionException, or Cancelled if the watch cancels it. May be
/// called from any thread and concurrently. Functions that only read retry once when a connection breaks off;
/// the others repeat only what has a key.
class ItemStore
{
public:
    struct Cancelled
    {
    };

    virtual ~ItemStore();

    /// Asks who is signed in, which also tells whether the credentials are accepted.
    [[nodiscard]] virtual Account account(const Watch& watch) = 0;
    /// Revokes the credentials, where the system supports that. Failures are ignored: credentials expire.
    virtual void signOut() = 0;

    [[nodiscard]] virtual std::vector<Web::Workspace> workspaces(const Watch& watch) = 0;
    [[nodiscard]] virtual Web::Workspace workspace(std::int64_t id, const Watch& watch) = 0;
    [[nodiscard]] virtual std::vector<Web::Item> items(const Web::Workspace& workspace,
                                                       const Watch& watch) = 0;
    [[nodiscard]] virtual Web::Item item(std::int64_t id, const Watch& watch) = 0;
    /// `key`: see NewVersion.
    [[nodiscard]] virtual Web::Item addItem(const NewItem& item, const std::string& key,
                                            const Watch& watch) = 0;

    [[nodiscard]] virtual std::vector<Web::Attachment> attachments(std::int64_t item, const Watch& watch) = 0;
    [[nodiscard]] virtual std::vector<Web::Version> versions(std::int64_t attachment, const Watch& watch) = 0;
    /// Where the newest content of an address is, given as Attachment::uri or with ".xml" appended.
    /// Addresses of other systems are refused, so that no credentials are sent there.
    [[nodiscard]] virtual Content content(const std::string& uri, const Watch& watch) = 0;
    [[nodiscard]] virtual Content content(std::int64_t attachment, std::int64_t version,
                                          const Watch& watch) = 0;
    /// Downloads a content to a new local file, and checks size and hash. Leaves no file on failure.
    virtual void download(const Content& content, const std::string& file, const Watch& watch) = 0;

    [[nodiscard]] virtual std::vector<Web::Item> favourites(const Watch& watch) = 0;
    virtual void favourite(std::int64_t item, bool isFavourite, const Watch& watch) = 0;
    /// Matches word prefixes; best match first.
    [[nodiscard]] virtual std::vector<Web::Item> search(const std::string& text, int most,
                                                        const Watch& watch) = 0;
    [[nodiscard]] virtual std::vector<Web::Comment> comments(std::int64_t item, const Watch& watch) = 0;
    [[nodiscard]] virtual Web::Comment addComment(std::int64_t item, const std::string& body,
                                                  const std::string& key, const Watch& watch) = 0;

    /// What happened after a serial. With `seconds`, returns on the first event, or after that time
    /// without one.
    [[nodiscard]] virtual ItemEvents events(std::int64_t after, int seconds, const Watch& watch) = 0;

    /// Announces a content, and returns the identifier of the upload for the functions below.
    [[nodiscard]] virtual std::string beginUpload(std::uint64_t size, const std::string& sha256,
                                                  const Watch& watch) = 0;
    /// The number of bytes that have arrived. NotFound if the system has forgotten the upload.
    [[nodiscard]] virtual std::uint64_t arrived(const std::string& upload, const Watch& watch) = 0;
    /// Sends the rest of a local file, after what has arrived already.
    virtual void upload(const std::string& upload, const std::string& file, std::uint64_t from,
                        const Watch& watch) = 0;
    /// Makes a version from an uploaded content. Outdated if `madeFrom` isn't the newest version.
    [[nodiscard]] virtual MadeVersion addVersion(const NewVersion& version, const Watch& watch) = 0;

    // The system's page in the browser. On a system without one, these throw NotFound.

    /// A short-lived address of the page that signs the browser in, once.
    [[nodiscard]] virtual std::string dashboard(const Watch& watch);
    /// Claims a request of the page, so that no other program gets it. NotFound if another one has
    /// claimed it or it is too old.
    [[nodiscard]] virtual DashboardRequest takeRequest(std::int64_t id, const Watch& watch);
    /// The same for the ticket of a link.
    [[nodiscard]] virtual DashboardRequest redeemTicket(const std::string& ticket, const Watch& watch);
    /// Reports the outcome to the page. `detail` is shown to the user and may be empty.
    virtual void answerRequest(std::int64_t id, DashboardAnswer answer, const std::string& detail,
                               const Watch& watch);
};

} // namespace Vs::Itemhub
