#pragma once

#include "Services/Itemhub/Http/Message.h"

#include <QString>

#include <utility>
#include <vector>

namespace Itemhub::Routes {

class Texts;

/// A page with a form for customer, name and password, which works without a script. Whatever it is given is
/// shown as text.
struct SignInPage
{
    /// What somebody signs in to.
    enum class Kind { Program, Dashboard, Join };

    Kind kind = Kind::Program;
    std::string languages;        ///< As the browser's Accept-Language.
    QString action = "dashboard"; ///< Where the form goes, from the page that shows it.
    QString provider;             ///< What people call the provider of sign-ins; empty if there is none.
    QString providerPlace;        ///< Where the way to it begins.
    QString customer, account;
    std::vector<std::pair<QString, QString>> hidden; ///< More fields of the form, which come back unseen.
    QString goesTo;                                  ///< The origin to which the form's answer redirects.

    /// @param problem why what was typed was refused, as a Problem's code; null at first
    [[nodiscard]] Http::Response response(const char* problem) const;

private:
    [[nodiscard]] QString title(const Texts& texts) const;
    [[nodiscard]] QString why(const Texts& texts) const;
    [[nodiscard]] QString form(const Texts& texts) const;
};

} // namespace Itemhub::Routes
