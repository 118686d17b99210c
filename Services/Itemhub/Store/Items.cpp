#include "Services/Itemhub/Store/Items.h"

#include <algorithm>
#include <array>

namespace Itemhub::Store {

namespace {

// The first value of each statement that begins this way is the account whose favourites are reported.
const std::string kColumns = "SELECT i.id, i.workspace_id, i.caption, i.description, i.revision, a.name, "
                             "i.created_at, i.changed_at, f.item_id";
const std::string kFrom = " FROM item i JOIN account a ON a.id = i.created_by "
                          "LEFT JOIN favourite f ON f.item_id = i.id AND f.account_id = ? ";
const std::string kSelect = kColumns + kFrom;
const std::string kVisible = "EXISTS (SELECT 1 FROM held_role m WHERE m.account_id = ? AND "
                             "m.workspace_id IN (0, i.workspace_id)) ";

const std::string kOneWithRole = kColumns +
                                 ", (SELECT max(m.role) FROM held_role m WHERE m.account_id = ? AND "
                                 "m.workspace_id IN (0, i.workspace_id))" +
                                 kFrom + "WHERE i.id = ? AND i.tenant_id = ? AND i.deleted_at IS NULL";
const std::string kOne = kSelect + "WHERE i.id = ? AND i.deleted_at IS NULL";
const std::string kVisibleOne = kSelect + "WHERE i.id = ? AND i.deleted_at IS NULL AND " + kVisible;
const std::string kOfWorkspace = kSelect + "WHERE i.workspace_id = ? AND i.deleted_at IS NULL ";

/// A list in one of the orders: its first page, and what follows an item, even one that has been removed
/// meanwhile.
struct Listing
{
    const char* name;
    std::string first, behind;
};

/// @param key with "%1" for the item; empty for the order of creation
Listing listing(const char* name, const QString& key, const QString& direction)
{
    const QString less = direction == "DESC" ? "<" : ">";
    const auto sorted = [&](const QString& by) { return kOfWorkspace + by.toStdString() + " LIMIT ?"; };
    if (key.isEmpty()) {
        const QString order = QString("ORDER BY i.id %1").arg(direction);
        return {name, sorted(order), sorted(QString("AND i.id %1 ? %2").arg(less, order))};
    }
    const QString order = QString("ORDER BY %1 %2, i.id %2").arg(key.arg("i"), direction);
    return {name, sorted(order),
            sorted(QString("AND (%1, i.id) %2 (SELECT %3, o.id FROM item o WHERE o.id = ?) %4")
                       .arg(key.arg("i"), less, key.arg("o"), order))};
}

/// Indexed by Order.
const std::array<Listing, 4> kListings{listing("oldest", {}, "ASC"), listing("newest", {}, "DESC"),
                                       listing("changed", "%1.changed_at", "DESC"),
                                       listing("name", "lower(%1.caption)", "ASC")};

const std::string kLinked = kSelect +
                            "JOIN item_link l ON l.linked_id = i.id WHERE l.item_id = ? AND "
                            "i.deleted_at IS NULL AND i.id > ? AND " +
                            kVisible + "ORDER BY i.id LIMIT ?";
const std::string kFavourites = kSelect + "WHERE f.item_id IS NOT NULL AND i.deleted_at IS NULL AND " +
                                kVisible + "ORDER BY f.created_at DESC, i.id DESC LIMIT ?";

Item itemOf(const Rows& rows)
{
    Item item;
    item.id = rows.number(0);
    item.workspace = rows.number(1);
    item.caption = rows.text(2);
    item.description = rows.text(3);
    item.revision = rows.number(4);
    item.createdBy = rows.text(5);
    item.createdAt = rows.number(6);
    item.changedAt = rows.number(7);
    item.favourite = !rows.isNull(8);
    return item;
}

} // namespace

qint64 addWorkspace(Connection& connection, qint64 tenant, const QString& name)
{
    return newId(
        connection.run("INSERT INTO workspace (tenant_id, name, created_at) VALUES (?, ?, ?) RETURNING id",
                       {tenant, name, now()}));
}

std::vector<Workspace> workspacesOf(Connection& connection, qint64 tenant, qint64 account, const Page& page)
{
    std::vector<Workspace> workspaces;
    Rows rows =
        connection.run("SELECT w.id, w.name, max(m.role), w.created_at FROM workspace w JOIN held_role m ON "
                       "m.account_id = ? AND m.workspace_id IN (0, w.id) WHERE w.tenant_id = ? AND w.id > ? "
                       "GROUP BY w.id, w.name, w.created_at ORDER BY w.id LIMIT ?",
                       {account, tenant, page.after, page.limit});
    while (rows.next())
        workspaces.push_back(
            {rows.number(0), rows.text(1), static_cast<Role>(rows.number(2)), rows.number(3)});
    return workspaces;
}

std::optional<Workspace> findWorkspace(Connection& connection, qint64 tenant, qint64 account,
                                       qint64 workspace)
{
    const auto found = workspacesOf(connection, tenant, account, {workspace - 1, 1});
    return !found.empty() && found[0].id == workspace ? std::optional(found[0]) : std::nullopt;
}

qint64 addItem(Connection& connection, qint64 tenant, qint64 workspace, qint64 account,
               const QString& caption, const QString& description)
{
    Transaction change(connection);
    qint64 item = 0;
    {
        Rows rows = connection.run(
            "INSERT INTO item (tenant_id, workspace_id, caption, description, revision, created_by, "
            "created_at, changed_at) VALUES (?, ?, ?, ?, 1, ?, ?, ?) RETURNING id",
            {tenant, workspace, caption, description, account, now(), now()});
        item = rows.next() ? rows.number(0) : 0;
    }
    connection.runBuilt(connection.dialect().index(tenant), {item, caption, description});
    change.commit();
    return item;
}

std::optional<Item> findItem(Connection& connection, qint64 account, qint64 item)
{
    return firstOf(connection.run(kOne, {account, item}), itemOf);
}

std::optional<Item> findVisibleItem(Connection& connection, qint64 account, qint64 item)
{
    return firstOf(connection.run(kVisibleOne, {account, item, account}), itemOf);
}

std::optional<ItemAndRole> findItemAndRole(Connection& connection, qint64 tenant, qint64 account, qint64 item)
{
    Rows rows = connection.run(kOneWithRole, {account, account, item, tenant});
    if (!rows.next())
        return std::nullopt;
    return ItemAndRole{itemOf(rows), static_cast<Role>(rows.number(9))};
}

std::optional<Order> orderOf(const std::string& name)
{
    const auto found =
        std::ranges::find_if(kListings, [&name](const Listing& each) { return name == each.name; });
    return found == kListings.end() ? std::nullopt
                                    : std::optional(static_cast<Order>(found - kListings.begin()));
}

std::vector<Item> itemsOf(Connection& connection, qint64 workspace, qint64 account, const Page& page,
                          Order order)
{
    const Listing& list = kListings.at(static_cast<size_t>(order));
    return allOf(page.after == 0 ? connection.run(list.first, {account, workspace, page.limit})
                                 : connection.run(list.behind, {account, workspace, page.after, page.limit}),
                 itemOf);
}

void touchItem(Connection& connection, qint64 item)
{
    connection.run("UPDATE item SET changed_at = ? WHERE id = ?", {now(), item});
}

bool changeItem(Connection& connection, qint64 tenant, qint64 item, qint64 revision, const QString& caption,
                const QString& description)
{
    Transaction change(connection);
    const bool changed = connection
                             .run("UPDATE item SET caption = ?, description = ?, revision = revision + 1, "
                                  "changed_at = ? WHERE id = ? AND revision = ? AND deleted_at IS NULL",
                                  {caption, description, now(), item, revision})
                             .changed() > 0;
    if (changed)
        indexItem(connection, tenant, item);
    change.commit();
    return changed;
}

bool removeItem(Connection& connection, qint64 tenant, qint64 item, qint64 revision)
{
    Transaction change(connection);
    const bool removed = connection
                             .run("UPDATE item SET deleted_at = ?, revision = revision + 1 WHERE id = ? AND "
                                  "deleted_at IS NULL AND (? = 0 OR revision = ?)",
                                  {now(), item, revision, revision})
                             .changed() > 0;
    if (removed)
        connection.runBuilt(connection.dialect().unindex(tenant), {item});
    change.commit();
    return removed;
}

void indexItem(Connection& connection, qint64 tenant, qint64 item)
{
    QString caption, text;
    {
        Rows rows = connection.run("SELECT caption, description FROM item WHERE id = ?", {item});
        if (!rows.next())
            return;
        caption = rows.text(0);
        text = rows.text(1);
    }
    {
        Rows rows = connection.run(
            "SELECT name FROM attachment WHERE item_id = ? AND deleted_at IS NULL ORDER BY id", {item});
        while (rows.next())
            text += '\n' + rows.text(0);
    }
    connection.runBuilt(connection.dialect().unindex(tenant), {item});
    connection.runBuilt(connection.dialect().index(tenant), {item, caption, text});
}

bool addLink(Connection& connection, qint64 item, qint64 linked)
{
    return connection
               .run("INSERT INTO item_link (item_id, linked_id, created_at) VALUES (?, ?, ?) ON CONFLICT DO "
                    "NOTHING",
                    {item, linked, now()})
               .changed() > 0;
}

bool removeLink(Connection& connection, qint64 item, qint64 linked)
{
    return connection.run("DELETE FROM item_link WHERE item_id = ? AND linked_id = ?", {item, linked})
               .changed() > 0;
}

std::vector<Item> linksOf(Connection& connection, qint64 account, qint64 item, const Page& page)
{
    return allOf(connection.run(kLinked, {account, item, page.after, account, page.limit}), itemOf);
}

bool setFavourite(Connection& connection, qint64 account, qint64 item, bool favourite)
{
    if (!favourite)
        return connection.run("DELETE FROM favourite WHERE account_id = ? AND item_id = ?", {account, item})
                   .changed() > 0;
    return connection
               .run("INSERT INTO favourite (account_id, item_id, created_at) VALUES (?, ?, ?) ON CONFLICT DO "
                    "NOTHING",
                    {account, item, now()})
               .changed() > 0;
}

std::vector<Item> favouritesOf(Connection& connection, qint64 account, qint64 limit)
{
    return allOf(connection.run(kFavourites, {account, account, limit}), itemOf);
}

} // namespace Itemhub::Store
