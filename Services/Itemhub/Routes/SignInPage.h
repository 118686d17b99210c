#pragma once

#include "Services/Itemhub/Http/Message.h"

#include <QString>

#include <utility>
#include <vector>

namespace Itemhub::Routes {

class Texts;

/// A page with a form for customer, name and password that works without scripts. All input is shown as plain
/// text.
struct SignInPage
{
    /// What somebody signs in to.
    enum class Kind { Program, Dashboard, Join };

    Kind kind = Kind::Program;
    std::string languages;        ///< As in the browser's Accept-Language.
    QString action = "dashboard"; ///< The form's target, relative to the page that shows it.
    QString provider;             ///< The sign-in provider's display name; empty if there is none.
    QString providerPlace;        ///< Where signing in through it starts.
    QString customer, account;
    std::vector<std::pair<QString, QString>> hidden; ///< Additional hidden fields of the form.
    QString goesTo;                                  ///< The origin to which submitting the form redirects.

    /// @param problem why the input was refused, as a Problem's code; null at first
    [[nodiscard]] Http::Response response(const char* problem) const;

private:
    [[nodiscard]] QString title(const Texts& texts) const;
    [[nodiscard]] QString why(const Texts& texts) const;
    [[nodiscard]] QString form(const Texts& texts) const;
};

} // namespace Itemhub::Routes
