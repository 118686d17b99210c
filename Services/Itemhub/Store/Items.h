#pragma once

#include "Services/Itemhub/Store/Accounts.h"

namespace Itemhub::Store {

struct Workspace
{
    qint64 id = 0;
    QString name;
    Role role = Role::None; ///< Of the caller.
    qint64 createdAt = 0;
};

struct Item
{
    qint64 id = 0, workspace = 0;
    QString caption, description;
    qint64 revision = 0; ///< Increases with each change of caption or description.
    QString createdBy;
    qint64 createdAt = 0, changedAt = 0;
    bool favourite = false; ///< Of the caller.
};

/// A page of a list: what follows an id, at most that many.
struct Page
{
    qint64 after = 0;
    qint64 limit = 100;
};

/// @throws StoreError of kind Conflict if the tenant has a workspace of that name
qint64 addWorkspace(Connection& connection, qint64 tenant, const QString& name);
/// Those in which the account has a role.
[[nodiscard]] std::vector<Workspace> workspacesOf(Connection& connection, qint64 tenant, qint64 account,
                                                  const Page& page);
[[nodiscard]] std::optional<Workspace> findWorkspace(Connection& connection, qint64 tenant, qint64 account,
                                                     qint64 workspace);

qint64 addItem(Connection& connection, qint64 tenant, qint64 workspace, qint64 account,
               const QString& caption, const QString& description);
[[nodiscard]] std::optional<Item> findItem(Connection& connection, qint64 account, qint64 item);

/// Nothing if it isn't visible to the account.
[[nodiscard]] std::optional<Item> findVisibleItem(Connection& connection, qint64 account, qint64 item);

/// An item with the account's role there, which may be none.
struct ItemAndRole
{
    Item item;
    Role role = Role::None;
};
[[nodiscard]] std::optional<ItemAndRole> findItemAndRole(Connection& connection, qint64 tenant,
                                                         qint64 account, qint64 item);

/// How a list of items is sorted.
enum class Order { Oldest, Newest, Changed, Name };
[[nodiscard]] std::optional<Order> orderOf(const std::string& name);

/// @param page follows its item, wherever that is in the order
[[nodiscard]] std::vector<Item> itemsOf(Connection& connection, qint64 workspace, qint64 account,
                                        const Page& page, Order order = Order::Oldest);
/// Records that something about the item has just changed.
void touchItem(Connection& connection, qint64 item);
/// @returns false, without changing anything, if the item no longer has that revision
[[nodiscard]] bool changeItem(Connection& connection, qint64 tenant, qint64 item, qint64 revision,
                              const QString& caption, const QString& description);
/// The item can't be found from then on; versions and their contents stay.
/// @param revision 0 for any
[[nodiscard]] bool removeItem(Connection& connection, qint64 tenant, qint64 item, qint64 revision);
/// Updates the search index for the item and its attachments.
void indexItem(Connection& connection, qint64 tenant, qint64 item);

/// @returns false if the link existed already
bool addLink(Connection& connection, qint64 item, qint64 linked);
bool removeLink(Connection& connection, qint64 item, qint64 linked);
/// Those of the linked items that are visible to the account.
[[nodiscard]] std::vector<Item> linksOf(Connection& connection, qint64 account, qint64 item,
                                        const Page& page);

bool setFavourite(Connection& connection, qint64 account, qint64 item, bool favourite);
/// Newest first.
[[nodiscard]] std::vector<Item> favouritesOf(Connection& connection, qint64 account, qint64 limit);

} // namespace Itemhub::Store
