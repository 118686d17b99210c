#pragma once

#include "Services/Itemhub/Store/Items.h"

namespace Itemhub::Store {

/// What a request refers to, and what the account may do there.
struct Subject
{
    qint64 workspace = 0, item = 0, attachment = 0; ///< 0 where it doesn't apply.
    Role role = Role::None;
    Item read; ///< The item itself, if the request refers to one.
};

/// Each finds nothing if the tenant has no such thing or it was removed.
[[nodiscard]] std::optional<Subject> aboutWorkspace(Connection& connection, qint64 tenant, qint64 account,
                                                    qint64 id);
[[nodiscard]] std::optional<Subject> aboutItem(Connection& connection, qint64 tenant, qint64 account,
                                               qint64 id);
[[nodiscard]] std::optional<Subject> aboutAttachment(Connection& connection, qint64 tenant, qint64 account,
                                                     qint64 id);
[[nodiscard]] std::optional<Subject> aboutComment(Connection& connection, qint64 tenant, qint64 account,
                                                  qint64 id);
/// The account's highest role in any workspace.
[[nodiscard]] Role highestRole(Connection& connection, qint64 account);

} // namespace Itemhub::Store
