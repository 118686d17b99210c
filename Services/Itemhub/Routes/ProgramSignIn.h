#pragma once

#include "Services/Itemhub/Routes/Call.h"
#include "Services/Itemhub/Routes/Form.h"
#include "Services/Itemhub/Routes/SignInPage.h"

namespace Itemhub::Routes {

/// The request of a program that signs in through the browser (OAuth 2.0 with PKCE).
struct ProgramWish
{
    QString client, redirect, state, challenge;

    /// @throws Http::Problem with 400 if it isn't acceptable
    [[nodiscard]] static ProgramWish of(const Field& field);
    [[nodiscard]] static ProgramWish ofQuery(const QString& query);
    [[nodiscard]] QString query() const;
};

/// The fields of the request's query.
[[nodiscard]] Field queryOf(const Call& call);

/// The form in which the program's user signs in.
/// @param place of the form's target, relative to the page that shows it
[[nodiscard]] SignInPage pageFor(const Call& call, const ProgramWish& wish, const QString& place);

/// Redirects the browser to the program with a code, which the program exchanges for a token of the caller.
/// Within a transaction.
[[nodiscard]] Http::Response backToProgram(Call& call, const ProgramWish& wish);

} // namespace Itemhub::Routes
