#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// The dashboard: a page in the system's browser, of the same origin as everything that it asks for. Who is
// signed in there has a cookie (Access/PageSession.h).

/// The page; for somebody who isn't signed in, a form to do so.
[[nodiscard]] Http::Response showDashboard(Call& call);
/// What was typed there.
[[nodiscard]] Http::Response signInToDashboard(Call& call);
[[nodiscard]] Http::Response signOutOfDashboard(Call& call);
/// What the page loads besides.
[[nodiscard]] Http::Response showDashboardFile(Call& call);

/// Gives a program a link to the page that signs a browser in, once and soon.
[[nodiscard]] Http::Response makeDashboardLink(Call& call);
/// What the link leads to.
[[nodiscard]] Http::Response enterDashboard(Call& call);

/// The service as browsers see it.
[[nodiscard]] std::string pageBase(const Call& call);
/// Goes on to the page, which the browser then has a session for.
[[nodiscard]] Http::Response beginPageSession(Call& call, qint64 account, Store::Role scope,
                                              const char* page);

} // namespace Itemhub::Routes
