#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <optional>

namespace Itemhub::Store {

/// A sign-in in a browser for which the program hasn't fetched its token yet.
struct SignInCode
{
    QString hash; ///< Of the code itself, which only the browser and the program know.
    qint64 account = 0;
    QString client;    ///< What the program calls itself.
    QString redirect;  ///< Where the browser was redirected with the code.
    QString challenge; ///< The hash of the verifier that the program presents with the code.
    qint64 expiresAt = 0;
};

void addCode(Connection& connection, const SignInCode& code);
/// Removes the code, so that it can be used only once. @returns nothing if there is none or it has expired
[[nodiscard]] std::optional<SignInCode> takeCode(Connection& connection, const QString& hash);

} // namespace Itemhub::Store
