#include "Services/Itemhub/Store/Attachments.h"

namespace Itemhub::Store {

namespace {

const std::string kAttachment =
    "SELECT t.id, t.item_id, i.workspace_id, t.name, t.doc_type, t.latest, t.created_at "
    "FROM attachment t JOIN item i ON i.id = t.item_id WHERE t.deleted_at IS NULL AND "
    "i.deleted_at IS NULL AND ";
const std::string kOneAttachment = kAttachment + "t.id = ?";
const std::string kOfItem = kAttachment + "t.item_id = ? AND t.id > ? ORDER BY t.id LIMIT ?";

const std::string kVersions =
    "SELECT v.number, v.label, a.name, v.created_at, v.sha256, b.size, v.made_from "
    "FROM version v JOIN account a ON a.id = v.author_id JOIN blob b ON b.sha256 = v.sha256 "
    "WHERE v.attachment_id = ? AND v.number > ? ORDER BY v.number LIMIT ?";

const std::string kComment = "SELECT c.id, c.author_id, a.name, c.body, c.created_at FROM comment c "
                             "JOIN account a ON a.id = c.author_id WHERE ";
const std::string kOneComment = kComment + "c.id = ?";
const std::string kCommentsOfItem = kComment + "c.item_id = ? AND c.id > ? ORDER BY c.id LIMIT ?";

Attachment attachmentOf(const Rows& rows)
{
    return {rows.number(0), rows.number(1), rows.number(2), rows.text(3),
            rows.text(4),   rows.number(5), rows.number(6)};
}

Comment commentOf(const Rows& rows)
{
    return {rows.number(0), rows.number(1), rows.text(2), rows.text(3), rows.number(4)};
}

Version versionOf(const Rows& rows)
{
    return {rows.number(0), rows.text(1),   rows.text(2),  rows.number(3),
            rows.text(4),   rows.number(5), rows.number(6)};
}

} // namespace

qint64 addAttachment(Connection& connection, qint64 item, qint64 account, const QString& name,
                     const QString& docType)
{
    return newId(
        connection.run("INSERT INTO attachment (item_id, name, doc_type, latest, created_by, created_at) "
                       "VALUES (?, ?, ?, 0, ?, ?) RETURNING id",
                       {item, name, docType, account, now()}));
}

std::optional<Attachment> findAttachment(Connection& connection, qint64 attachment)
{
    return firstOf(connection.run(kOneAttachment, {attachment}), attachmentOf);
}

std::vector<Attachment> attachmentsOf(Connection& connection, qint64 item, const Page& page)
{
    return allOf(connection.run(kOfItem, {item, page.after, page.limit}), attachmentOf);
}

bool removeAttachment(Connection& connection, qint64 attachment)
{
    return connection
               .run("UPDATE attachment SET deleted_at = ? WHERE id = ? AND deleted_at IS NULL",
                    {now(), attachment})
               .changed() > 0;
}

qint64 addVersion(Connection& connection, qint64 attachment, qint64 account, const QString& label,
                  const QString& sha256, qint64 madeFrom)
{
    Transaction change(connection);
    // Whoever changes the row first locks it until the end; the other one then finds another number there.
    if (connection
            .run("UPDATE attachment SET latest = latest + 1 WHERE id = ? AND latest = ?",
                 {attachment, madeFrom})
            .changed() == 0)
        return 0;
    connection.run(
        "INSERT INTO version (attachment_id, number, label, author_id, created_at, sha256, made_from) "
        "VALUES (?, ?, ?, ?, ?, ?, ?)",
        {attachment, madeFrom + 1, label, account, now(), sha256, madeFrom});
    change.commit();
    return madeFrom + 1;
}

std::optional<Version> findVersion(Connection& connection, qint64 attachment, qint64 number)
{
    const auto found = versionsOf(connection, attachment, {number - 1, 1});
    return !found.empty() && found[0].number == number ? std::optional(found[0]) : std::nullopt;
}

std::vector<Version> versionsOf(Connection& connection, qint64 attachment, const Page& page)
{
    return allOf(connection.run(kVersions, {attachment, page.after, page.limit}), versionOf);
}

void addBlob(Connection& connection, const QString& sha256, qint64 size)
{
    connection.run("INSERT INTO blob (sha256, size, created_at) VALUES (?, ?, ?) ON CONFLICT DO NOTHING",
                   {sha256, size, now()});
}

void removeBlob(Connection& connection, const QString& sha256)
{
    connection.run("DELETE FROM blob WHERE sha256 = ?", {sha256});
}

bool isReferredTo(Connection& connection, const QString& sha256)
{
    Rows rows = connection.run("SELECT 1 WHERE EXISTS (SELECT 1 FROM version WHERE sha256 = ?) OR "
                               "EXISTS (SELECT 1 FROM upload WHERE sha256 = ?)",
                               {sha256, sha256});
    return rows.next();
}

void eachContent(Connection& connection, const std::function<void(const Content&)>& tell)
{
    Rows rows =
        connection.run("SELECT v.sha256, b.size, min(v.number), min(t.name) FROM version v "
                       "JOIN blob b ON b.sha256 = v.sha256 JOIN attachment t ON t.id = v.attachment_id "
                       "GROUP BY v.sha256, b.size ORDER BY v.sha256");
    while (rows.next())
        tell({rows.text(0), rows.number(1), rows.number(2), rows.text(3)});
}

qint64 addComment(Connection& connection, qint64 item, qint64 account, const QString& body)
{
    return newId(
        connection.run("INSERT INTO comment (item_id, author_id, body, created_at) VALUES (?, ?, ?, ?) "
                       "RETURNING id",
                       {item, account, body, now()}));
}

std::optional<Comment> findComment(Connection& connection, qint64 comment)
{
    return firstOf(connection.run(kOneComment, {comment}), commentOf);
}

std::vector<Comment> commentsOf(Connection& connection, qint64 item, const Page& page)
{
    return allOf(connection.run(kCommentsOfItem, {item, page.after, page.limit}), commentOf);
}

bool removeComment(Connection& connection, qint64 comment)
{
    return connection.run("DELETE FROM comment WHERE id = ?", {comment}).changed() > 0;
}

} // namespace Itemhub::Store
