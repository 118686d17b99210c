#include "Services/Itemhub/Store/Codes.h"

namespace Itemhub::Store {

void addCode(Connection& connection, const SignInCode& code)
{
    Transaction change(connection);
    connection.run("DELETE FROM sign_in_code WHERE expires_at < ?", {now()});
    connection.run("INSERT INTO sign_in_code (hash, account_id, client, redirect, challenge, expires_at) "
                   "VALUES (?, ?, ?, ?, ?, ?)",
                   {code.hash, code.account, code.client, code.redirect, code.challenge, code.expiresAt});
    change.commit();
}

std::optional<SignInCode> takeCode(Connection& connection, const QString& hash)
{
    Transaction change(connection);
    auto found =
        firstOf(connection.run("DELETE FROM sign_in_code WHERE hash = ? RETURNING hash, account_id, client, "
                               "redirect, challenge, expires_at",
                               {hash}),
                [](const Rows& rows) {
                    return SignInCode{rows.text(0), rows.number(1), rows.text(2),
                                      rows.text(3), rows.text(4),   rows.number(5)};
                });
    change.commit();
    return found && found->expiresAt > now() ? found : std::nullopt;
}

} // namespace Itemhub::Store
