#include "Services/Itemhub/Store/PageLinks.h"

namespace Itemhub::Store {

void addPageLink(Connection& connection, const PageLink& link)
{
    Transaction change(connection);
    connection.run("DELETE FROM page_link WHERE expires_at < ?", {now()});
    connection.run("INSERT INTO page_link (hash, account_id, scope, expires_at) VALUES (?, ?, ?, ?)",
                   {link.hash, link.account, static_cast<int>(link.scope), link.expiresAt});
    change.commit();
}

std::optional<PageLink> takePageLink(Connection& connection, const QString& hash)
{
    Transaction change(connection);
    auto found = firstOf(
        connection.run("DELETE FROM page_link WHERE hash = ? AND account_id IN (SELECT id FROM account "
                       "WHERE disabled = 0) RETURNING hash, account_id, scope, expires_at",
                       {hash}),
        [](const Rows& rows) {
            return PageLink{rows.text(0), rows.number(1), static_cast<Role>(rows.number(2)), rows.number(3)};
        });
    change.commit();
    return found && found->expiresAt > now() ? found : std::nullopt;
}

} // namespace Itemhub::Store
