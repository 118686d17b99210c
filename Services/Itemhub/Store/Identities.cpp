#include "Services/Itemhub/Store/Identities.h"

namespace Itemhub::Store {

void addVisit(Connection& connection, const ProviderVisit& visit)
{
    Transaction change(connection);
    connection.run("DELETE FROM provider_visit WHERE expires_at < ?", {now()});
    connection.run("INSERT INTO provider_visit (hash, account_id, verifier, nonce, expires_at, wish) VALUES "
                   "(?, ?, ?, ?, ?, ?)",
                   {visit.hash, visit.account ? QVariant(visit.account) : QVariant(), visit.verifier,
                    visit.nonce, visit.expiresAt, visit.wish});
    change.commit();
}

std::optional<ProviderVisit> takeVisit(Connection& connection, const QString& hash)
{
    Transaction change(connection);
    auto found = firstOf(connection.run("DELETE FROM provider_visit WHERE hash = ? RETURNING hash, "
                                        "account_id, verifier, nonce, expires_at, wish",
                                        {hash}),
                         [](const Rows& rows) {
                             return ProviderVisit{rows.text(0), rows.number(1), rows.text(2),
                                                  rows.text(3), rows.number(4), rows.text(5)};
                         });
    change.commit();
    return found && found->expiresAt > now() ? found : std::nullopt;
}

std::optional<Account> accountOfIdentity(Connection& connection, const QString& issuer,
                                         const QString& subject)
{
    return firstOf(
        connection.run("SELECT a.id, a.tenant_id, a.name, a.password_hash, a.disabled FROM "
                       "identity i JOIN account a ON a.id = i.account_id WHERE i.issuer = ? AND "
                       "i.subject = ?",
                       {issuer, subject}),
        [](const Rows& rows) {
            return Account{rows.number(0), rows.number(1), rows.text(2), rows.text(3), rows.number(4) != 0};
        });
}

bool linkIdentity(Connection& connection, const QString& issuer, const QString& subject, qint64 account)
{
    connection.run("INSERT INTO identity (issuer, subject, account_id, created_at) VALUES (?, ?, ?, ?) ON "
                   "CONFLICT DO NOTHING",
                   {issuer, subject, account, now()});
    const auto found = accountOfIdentity(connection, issuer, subject);
    return found && found->id == account;
}

bool unlinkIdentities(Connection& connection, qint64 account)
{
    return connection.run("DELETE FROM identity WHERE account_id = ?", {account}).changed() > 0;
}

bool hasIdentity(Connection& connection, const QString& issuer, qint64 account)
{
    return connection.run("SELECT 1 FROM identity WHERE issuer = ? AND account_id = ?", {issuer, account})
        .next();
}

} // namespace Itemhub::Store
