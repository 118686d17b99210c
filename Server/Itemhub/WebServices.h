#pragma once

#include "Server/Base/Exception.h"

#include <cstdint>
#include <string>
#include <vector>

/// What the lifecycle service keeps, as values, and how it fails. Any thread.
namespace Corvane::Itemstore::WebServices {

/// A place for items. Roles are given by workspace.
class Workspace
{
public:
    Workspace() = default;
    Workspace(std::int64_t id, std::string name, std::string role = {})
        : m_id(id), m_name(std::move(name)), m_role(std::move(role))
    {
    }

    std::int64_t id() const { return m_id; }
    /// UTF-8, as all texts here. As a person typed it: show it as plain text.
    const std::string& name() const { return m_name; }
    /// Of the signed-in account: "reader", "writer" or "admin".
    const std::string& role() const { return m_role; }
    bool mayWrite() const { return m_role == "writer" || m_role == "admin"; }

private:
    std::int64_t m_id = 0;
    std::string m_name, m_role;
};

/// What a team works on: a caption, a description, and attachments.
struct ItemValues
{
    std::int64_t id = 0;
    std::int64_t workspaceId = 0;
    std::string caption;
    std::string description;
    std::int64_t revision = 0; ///< Of caption and description, from 1.
    std::string createdBy;     ///< An account's name.
    std::string createdAt;     ///< In UTC: "2026-01-31T12:00:00.000Z".
    std::string changedAt;     ///< The same.
    bool isFavourite = false;  ///< Of the signed-in account.
};

class Item
{
public:
    Item() = default;
    explicit Item(ItemValues values) : m_values(std::move(values)) {}

    std::int64_t id() const { return m_values.id; }
    std::int64_t workspaceId() const { return m_values.workspaceId; }
    const std::string& caption() const { return m_values.caption; }
    const std::string& description() const { return m_values.description; }
    std::int64_t revision() const { return m_values.revision; }
    const std::string& createdBy() const { return m_values.createdBy; }
    const std::string& createdAt() const { return m_values.createdAt; }
    const std::string& changedAt() const { return m_values.changedAt; }
    bool isFavourite() const { return m_values.isFavourite; }

private:
    ItemValues m_values;
};

/// A file of an item, which has versions.
struct AttachmentValues
{
    std::int64_t id = 0;
    std::int64_t itemId = 0;
    std::int64_t workspaceId = 0;
    std::string name;               ///< A file's, as "wheel.vlra".
    std::string docType;            ///< As "VeloraDocType".
    std::int64_t latestVersion = 0; ///< 0 as long as there is none.
    std::string uri;
};

class Attachment
{
public:
    Attachment() = default;
    explicit Attachment(AttachmentValues values) : m_values(std::move(values)) {}

    std::int64_t id() const { return m_values.id; }
    std::int64_t itemId() const { return m_values.itemId; }
    std::int64_t workspaceId() const { return m_values.workspaceId; }
    const std::string& name() const { return m_values.name; }
    const std::string& docType() const { return m_values.docType; }
    std::int64_t latestVersion() const { return m_values.latestVersion; }
    /// What ItemhubUtilities::downloadAttachment takes.
    const std::string& uri() const { return m_values.uri; }

private:
    AttachmentValues m_values;
};

/// One state of an attachment; none is ever changed or lost.
struct Version
{
    std::int64_t number = 0; ///< From 1.
    std::string label;       ///< Empty for a save that nobody marked.
    std::string author;
    std::string createdAt;
    std::string sha256; ///< Of its content, 64 hexadecimal digits; empty where the system doesn't know it.
    std::uint64_t size = 0;
    std::int64_t madeFrom = 0; ///< The version that it continues; 0 for the first.
};

struct Comment
{
    std::int64_t id = 0;
    std::string author;
    std::string body; ///< Plain text, whatever it looks like.
    std::string createdAt;
};

/// The service answered with something that isn't what it should be: no JSON, of wrong types, beyond all
/// measure. what() says which request, and what was wrong.
class PayloadException : public Vs::Exception
{
public:
    using Exception::Exception;
    ~PayloadException() override;
};

/// The service understood the request and refuses it. what() says what was asked, and the service's reason.
class ItemhubException : public Vs::Exception
{
public:
    enum class Kind {
        NotSignedIn, ///< Nobody is signed in, or the service no longer takes the token.
        Forbidden,   ///< This account may not.
        NotFound,    ///< It isn't there, or not for this account.
        Outdated,    ///< A version was made from one that isn't the newest any more; see latest().
        Changed,     ///< Another changed the item meanwhile.
        Conflict,    ///< Another contradiction to what the service has.
        BadRequest,  ///< The service doesn't take such values.
        TooLarge,    ///< Or no space is left there.
        Busy,        ///< The service can't at the moment; the same may succeed later.
        Damaged,     ///< What the service has is damaged or missing there.
        Local,       ///< This machine's own files could not be read or written.
        Disabled,    ///< The service is switched off for this installation.
    };

    ItemhubException(Kind kind, const std::string& message, Version latest = {},
                     std::source_location where = std::source_location::current());
    ~ItemhubException() override;

    Kind kind() const { return m_kind; }
    /// Of Outdated: the newest version, with who made it and when.
    const Version& latest() const { return m_latest; }

private:
    Kind m_kind;
    Version m_latest;
};

/// There was no answer: the service can't be reached, or the connection broke off or stalled. Whether the
/// request was carried out isn't known.
class ConnectionException : public Vs::Exception
{
public:
    using Exception::Exception;
    ~ConnectionException() override;
};

} // namespace Corvane::Itemstore::WebServices
