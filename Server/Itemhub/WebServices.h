#pragma once

#include "Server/Base/Exception.h"

#include <cstdint>
#include <string>
#include <vector>

/// The values that the lifecycle service keeps, and how it fails. Any thread.
namespace Corvane::Itemstore::WebServices {

/// A container of items. Roles are assigned per workspace.
class Workspace
{
public:
    Workspace() = default;
    Workspace(std::int64_t id, std::string name, std::string role = {})
        : m_id(id), m_name(std::move(name)), m_role(std::move(role))
    {
    }

    std::int64_t id() const { return m_id; }
    /// UTF-8, like all texts here. As a user typed it: display it as plain text.
    const std::string& name() const { return m_name; }
    /// The signed-in account's role: "reader", "writer" or "admin".
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
    std::string createdAt;     ///< In UTC, for example "2026-01-31T12:00:00.000Z".
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
    std::string name;               ///< A file name, for example "wheel.vlra".
    std::string docType;            ///< For example "VeloraDocType".
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
    /// The argument of ItemhubUtilities::downloadAttachment.
    const std::string& uri() const { return m_values.uri; }

private:
    AttachmentValues m_values;
};

/// One state of an attachment; versions never change and are never lost.
struct Version
{
    std::int64_t number = 0; ///< From 1.
    std::string label;       ///< Empty for a save without a label.
    std::string author;
    std::string createdAt;
    std::string sha256; ///< Of its content, 64 hexadecimal digits; empty if the system doesn't know it.
    std::uint64_t size = 0;
    std::int64_t madeFrom = 0; ///< The version it is based on; 0 for the first.
};

struct Comment
{
    std::int64_t id = 0;
    std::string author;
    std::string body; ///< Plain text, whatever it looks like.
    std::string createdAt;
};

/// The service sent a malformed response: not JSON, of wrong types, or far too large. what() says which
/// request and what was wrong.
class PayloadException : public Vs::Exception
{
public:
    using Exception::Exception;
    ~PayloadException() override;
};

/// The service understood the request and refused it. what() says what was requested, and the service's
/// reason.
class ItemhubException : public Vs::Exception
{
public:
    enum class Kind {
        NotSignedIn, ///< Nobody is signed in, or the service no longer takes the token.
        Forbidden,   ///< This account isn't allowed to.
        NotFound,    ///< It doesn't exist, or not for this account.
        Outdated,    ///< A version was made from one that is no longer the newest; see latest().
        Changed,     ///< Somebody else changed the item meanwhile.
        Conflict,    ///< Another conflict with what the service has.
        BadRequest,  ///< The service doesn't accept such values.
        TooLarge,    ///< Or no space is left there.
        Busy,        ///< The service is unable at the moment; the same may succeed later.
        Damaged,     ///< The service's data is damaged or missing.
        Local,       ///< This machine's own files could not be read or written.
        Disabled,    ///< The service is switched off for this installation.
    };

    ItemhubException(Kind kind, const std::string& message, Version latest = {},
                     std::source_location where = std::source_location::current());
    ~ItemhubException() override;

    Kind kind() const { return m_kind; }
    /// For Outdated: the newest version, with its author and time.
    const Version& latest() const { return m_latest; }

private:
    Kind m_kind;
    Version m_latest;
};

/// There was no response: the service is unreachable, or the connection broke off or stalled. Whether the
/// request was carried out is unknown.
class ConnectionException : public Vs::Exception
{
public:
    using Exception::Exception;
    ~ConnectionException() override;
};

} // namespace Corvane::Itemstore::WebServices
