#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <optional>

namespace Itemhub::Store {

/// A sign-in in a browser that a program has not taken up yet.
struct SignInCode
{
    QString hash; ///< Of the code itself, which only browser and program have.
    qint64 account = 0;
    QString client;    ///< What the program calls itself.
    QString redirect;  ///< Where the browser was sent with the code.
    QString challenge; ///< The hash of what the program shows with the code.
    qint64 expiresAt = 0;
};

void addCode(Connection& connection, const SignInCode& code);
/// Takes the code away, so that it serves once. @returns nothing if there is none, or it has expired
[[nodiscard]] std::optional<SignInCode> takeCode(Connection& connection, const QString& hash);

} // namespace Itemhub::Store
