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
    std::string expiresAt; ///< In UTC, of the token; empty if it doesn't end.
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
    std::string file;         ///< Its name, cleaned so that a file may be called so.
    std::string docType;
    std::string sha256;
    std::uint64_t size = 0;
    std::string address;
};

/// A version that is to be made. With neither attachment nor version before, both are made in one step.
struct NewVersion
{
    std::int64_t itemId = 0;
    std::int64_t attachmentId = 0; ///< 0: the attachment is new, too.
    std::string name;              ///< Of a new attachment.
    std::string docType;           ///< Of a new attachment.
    std::string upload;            ///< What beginUpload gave; all of its bytes have been sent.
    std::string label;
    std::int64_t madeFrom = 0;
    std::string key; ///< Its own for each version: a repeated request with it makes no second one.
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
    std::string kind; ///< As "version.added", "favourite.removed".
    std::int64_t workspaceId = 0, itemId = 0, attachmentId = 0, version = 0; ///< 0 where it concerns none.
    std::string account;                                                     ///< Who did it.
    std::string at;                                                          ///< In UTC.
    std::int64_t requestId = 0; ///< Of "program.asked": what takeRequest takes.
};

struct ItemEvents
{
    std::vector<ItemEvent> events;
    std::int64_t next = 0; ///< The serial to go on from.
};

/// What the system's page in the browser, its dashboard, asks the program to do. Whether it may is the
/// program's affair.
struct DashboardRequest
{
    std::int64_t id = 0;
    std::string command;                          ///< By its identifier.
    std::map<std::string, std::string> arguments; ///< By their names; numbers in decimal digits.
};

/// What came of it.
enum class DashboardAnswer {
    Done,
    Refused, ///< By the person.
    Failed
};

/// A system that keeps items, with the account that is signed in to it. Everything else in this folder is
/// the same whichever system stands behind.
///
/// Each function waits for the answer, at most a minute without any byte, and throws PayloadException,
/// ItemhubException or ConnectionException; cancelled by the watch, it throws Cancelled. Any thread, several
/// at once. Functions that only read ask once more when a connection breaks off; the others repeat nothing
/// but what has a key.
class ItemStore
{
public:
    struct Cancelled
    {
    };

    virtual ~ItemStore();

    /// Asks who is signed in, and so whether the credentials are taken.
    [[nodiscard]] virtual Account account(const Watch& watch) = 0;
    /// Ends the credentials there, where the system has that. What fails is left: they expire.
    virtual void signOut() = 0;

    [[nodiscard]] virtual std::vector<Web::Workspace> workspaces(const Watch& watch) = 0;
    [[nodiscard]] virtual Web::Workspace workspace(std::int64_t id, const Watch& watch) = 0;
    [[nodiscard]] virtual std::vector<Web::Item> items(const Web::Workspace& workspace,
                                                       const Watch& watch) = 0;
    [[nodiscard]] virtual Web::Item item(std::int64_t id, const Watch& watch) = 0;
    /// `key` as in NewVersion.
    [[nodiscard]] virtual Web::Item addItem(const NewItem& item, const std::string& key,
                                            const Watch& watch) = 0;

    [[nodiscard]] virtual std::vector<Web::Attachment> attachments(std::int64_t item, const Watch& watch) = 0;
    [[nodiscard]] virtual std::vector<Web::Version> versions(std::int64_t attachment, const Watch& watch) = 0;
    /// Where the newest content of an address is, Attachment::uri or the same with ".xml" behind it.
    /// Addresses of other systems are refused, so that no credentials get there.
    [[nodiscard]] virtual Content content(const std::string& uri, const Watch& watch) = 0;
    [[nodiscard]] virtual Content content(std::int64_t attachment, std::int64_t version,
                                          const Watch& watch) = 0;
    /// Writes a content into a new local file, and compares size and hash. What fails leaves no file.
    virtual void download(const Content& content, const std::string& file, const Watch& watch) = 0;

    [[nodiscard]] virtual std::vector<Web::Item> favourites(const Watch& watch) = 0;
    virtual void favourite(std::int64_t item, bool isFavourite, const Watch& watch) = 0;
    /// By the beginnings of words, the best first.
    [[nodiscard]] virtual std::vector<Web::Item> search(const std::string& text, int most,
                                                        const Watch& watch) = 0;
    [[nodiscard]] virtual std::vector<Web::Comment> comments(std::int64_t item, const Watch& watch) = 0;
    [[nodiscard]] virtual Web::Comment addComment(std::int64_t item, const std::string& body,
                                                  const std::string& key, const Watch& watch) = 0;

    /// What happened behind a serial; with `seconds`, the answer comes with the first event, or after so many
    /// without any.
    [[nodiscard]] virtual ItemEvents events(std::int64_t after, int seconds, const Watch& watch) = 0;

    /// Announces a content, and gives what the upload is called in the functions below.
    [[nodiscard]] virtual std::string beginUpload(std::uint64_t size, const std::string& sha256,
                                                  const Watch& watch) = 0;
    /// How many bytes have arrived. NotFound if the system has forgotten the upload.
    [[nodiscard]] virtual std::uint64_t arrived(const std::string& upload, const Watch& watch) = 0;
    /// Sends the rest of a local file, from what has arrived.
    virtual void upload(const std::string& upload, const std::string& file, std::uint64_t from,
                        const Watch& watch) = 0;
    /// Makes a version of an uploaded content. Outdated if `madeFrom` isn't the newest version.
    [[nodiscard]] virtual MadeVersion addVersion(const NewVersion& version, const Watch& watch) = 0;

    // The system's page in the browser. For a system without one, these throw NotFound.

    /// An address of the page by which the browser is signed in, once and soon.
    [[nodiscard]] virtual std::string dashboard(const Watch& watch);
    /// Takes what the page asks for, which no other program gets then. NotFound if another has it, or it is
    /// too old.
    [[nodiscard]] virtual DashboardRequest takeRequest(std::int64_t id, const Watch& watch);
    /// The same by the ticket of a link.
    [[nodiscard]] virtual DashboardRequest redeemTicket(const std::string& ticket, const Watch& watch);
    /// Tells the page. `detail` is for the person, and may be empty.
    virtual void answerRequest(std::int64_t id, DashboardAnswer answer, const std::string& detail,
                               const Watch& watch);
};

} // namespace Vs::Itemhub
