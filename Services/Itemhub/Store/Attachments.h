#pragma once

#include "Services/Itemhub/Store/Items.h"

#include <functional>

namespace Itemhub::Store {

struct Version
{
    qint64 number = 0;
    QString label, author;
    qint64 createdAt = 0;
    QString sha256;
    qint64 size = 0;     ///< In bytes.
    qint64 madeFrom = 0; ///< The number of the version it is based on; 0 for the first.
};

struct Attachment
{
    qint64 id = 0, item = 0, workspace = 0;
    QString name, docType;
    qint64 latest = 0; ///< The number of the newest version; 0 if there is none yet.
    qint64 createdAt = 0;
};

struct Comment
{
    qint64 id = 0, author = 0;
    QString authorName, body;
    qint64 createdAt = 0;
};

qint64 addAttachment(Connection& connection, qint64 item, qint64 account, const QString& name,
                     const QString& docType);
[[nodiscard]] std::optional<Attachment> findAttachment(Connection& connection, qint64 attachment);
[[nodiscard]] std::vector<Attachment> attachmentsOf(Connection& connection, qint64 item, const Page& page);
bool removeAttachment(Connection& connection, qint64 attachment);

/// @returns the new version's number, or 0 if the one it was made from is no longer the newest
[[nodiscard]] qint64 addVersion(Connection& connection, qint64 attachment, qint64 account,
                                const QString& label, const QString& sha256, qint64 madeFrom);
[[nodiscard]] std::optional<Version> findVersion(Connection& connection, qint64 attachment, qint64 number);
[[nodiscard]] std::vector<Version> versionsOf(Connection& connection, qint64 attachment, const Page& page);

/// Records that the content is stored.
void addBlob(Connection& connection, const QString& sha256, qint64 size);
void removeBlob(Connection& connection, const QString& sha256);
/// Whether a version or an upload refers to it.
[[nodiscard]] bool isReferredTo(Connection& connection, const QString& sha256);

/// A content with the first version that has it.
struct Content
{
    QString sha256;
    qint64 size = 0, version = 0;
    QString attachment; ///< Its name.
};
void eachContent(Connection& connection, const std::function<void(const Content&)>& tell);

qint64 addComment(Connection& connection, qint64 item, qint64 account, const QString& body);
[[nodiscard]] std::optional<Comment> findComment(Connection& connection, qint64 comment);
[[nodiscard]] std::vector<Comment> commentsOf(Connection& connection, qint64 item, const Page& page);
bool removeComment(Connection& connection, qint64 comment);

} // namespace Itemhub::Store
