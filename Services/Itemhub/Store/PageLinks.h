#pragma once

#include "Services/Itemhub/Store/Accounts.h"

#include <optional>

namespace Itemhub::Store {

/// A link that signs a browser in once.
struct PageLink
{
    QString hash; ///< Of the code in the link.
    qint64 account = 0;
    Role scope = Role::Reader;
    qint64 expiresAt = 0;
};

void addPageLink(Connection& connection, const PageLink& link);
/// Removes the link, so that it can be used only once. @returns nothing if there is none, it has expired, or
/// the account is disabled
[[nodiscard]] std::optional<PageLink> takePageLink(Connection& connection, const QString& hash);

} // namespace Itemhub::Store
