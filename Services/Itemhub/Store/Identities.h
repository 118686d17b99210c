#pragma once

#include "Services/Itemhub/Store/Accounts.h"

namespace Itemhub::Store {

/// A browser's way to the provider and back.
struct ProviderVisit
{
    QString hash;       ///< Of the state that goes there and comes back.
    qint64 account = 0; ///< Whom it's to be linked to; 0 for a sign-in.
    QString verifier, nonce;
    qint64 expiresAt = 0;
    QString wish; ///< What a program asks for that signs in by it; empty for the dashboard.
};

void addVisit(Connection& connection, const ProviderVisit& visit);
/// Takes it away, so that it serves once. @returns nothing if there is none, or it has expired
[[nodiscard]] std::optional<ProviderVisit> takeVisit(Connection& connection, const QString& hash);

/// The account that a provider's subject stands for.
[[nodiscard]] std::optional<Account> accountOfIdentity(Connection& connection, const QString& issuer,
                                                       const QString& subject);
/// @returns false if it stands for another account
[[nodiscard]] bool linkIdentity(Connection& connection, const QString& issuer, const QString& subject,
                                qint64 account);
/// Ends all of an account's. @returns false if it had none
bool unlinkIdentities(Connection& connection, qint64 account);
[[nodiscard]] bool hasIdentity(Connection& connection, const QString& issuer, qint64 account);

} // namespace Itemhub::Store
