#pragma once

#include "Services/Itemhub/Http/Message.h"

#include <QString>

namespace Itemhub::Routes {

/// The dashboard's page, as one account gets it. Everything else that it shows, it asks for by itself.
struct DashboardPage
{
    std::string languages; ///< As the browser's Accept-Language.
    QString account, customer;
    QString proof;            ///< See Access::pageProof.
    bool own = false;         ///< Whether the service is a program's own, which needs no sign-in.
    QString scope;            ///< Beyond which the session may do nothing.
    QString provider;         ///< What the provider of sign-ins is called; empty if there is none.
    bool isLinked = false;    ///< Whether the account is linked to somebody there.
    bool administers = false; ///< Whether the session may do what administrators of all workspaces do.

    [[nodiscard]] Http::Response response() const;
};

/// A file that the page loads. @throws Http::Problem with 404 if the page has no such file
[[nodiscard]] Http::Response dashboardFile(const QString& name, const Http::Request& request);

} // namespace Itemhub::Routes
