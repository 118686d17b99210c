#pragma once

#include "Services/Itemhub/Http/Message.h"

#include <QString>

namespace Itemhub::Routes {

/// The dashboard's page for one account. Everything else it shows, it requests by itself.
struct DashboardPage
{
    std::string languages; ///< As in the browser's Accept-Language.
    QString account, customer;
    QString proof;         ///< See Access::pageProof.
    bool own = false;      ///< Whether this is a program's own service, which needs no sign-in.
    QString scope;         ///< The session's upper limit.
    QString provider;      ///< The sign-in provider's display name; empty if there is none.
    bool isLinked = false; ///< Whether the account is linked to one at the provider.
    bool administers =
        false; ///< Whether the session may do what requires an administrator of all workspaces.

    [[nodiscard]] Http::Response response() const;
};

/// A file that the page loads. @throws Http::Problem with 404 if the page has no such file
[[nodiscard]] Http::Response dashboardFile(const QString& name, const Http::Request& request);

} // namespace Itemhub::Routes
