#pragma once

#include "Services/Itemhub/Store/Accounts.h"

namespace Itemhub::Store {

/// A browser's round trip to the provider.
struct ProviderVisit
{
    QString hash;       ///< Of the state, which goes there and comes back.
    qint64 account = 0; ///< The account to link; 0 for a sign-in.
    QString verifier, nonce;
    qint64 expiresAt = 0;
    QString wish; ///< The request of a program that signs in this way; empty for the dashboard.
};

void addVisit(Connection& connection, const ProviderVisit& visit);
/// Removes it, so that it can be used only once. @returns nothing if there is none or it has expired
[[nodiscard]] std::optional<ProviderVisit> takeVisit(Connection& connection, const QString& hash);

/// The account linked to a provider's subject.
[[nodiscard]] std::optional<Account> accountOfIdentity(Connection& connection, const QString& issuer,
                                                       const QString& subject);
/// @returns false if it is linked to another account
[[nodiscard]] bool linkIdentity(Connection& connection, const QString& issuer, const QString& subject,
                                qint64 account);
/// Removes all of an account's links.
/// @returns false if it had none
bool unlinkIdentities(Connection& connection, qint64 account);
[[nodiscard]] bool hasIdentity(Connection& connection, const QString& issuer, qint64 account);

} // namespace Itemhub::Store
