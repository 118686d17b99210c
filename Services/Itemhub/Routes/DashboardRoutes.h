#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// The dashboard: a page in the system's browser, of the same origin as everything that it requests. A
// signed-in browser has a cookie (Access/PageSession.h).

/// The page; a sign-in form if nobody is signed in.
[[nodiscard]] Http::Response showDashboard(Call& call);
/// The submitted form.
[[nodiscard]] Http::Response signInToDashboard(Call& call);
[[nodiscard]] Http::Response signOutOfDashboard(Call& call);
/// The files that the page loads.
[[nodiscard]] Http::Response showDashboardFile(Call& call);

/// Gives a program a short-lived link to the page that signs a browser in, once.
[[nodiscard]] Http::Response makeDashboardLink(Call& call);
/// The target of that link.
[[nodiscard]] Http::Response enterDashboard(Call& call);

/// The service as browsers see it.
[[nodiscard]] std::string pageBase(const Call& call);
/// Redirects to the page, with a session for the browser.
[[nodiscard]] Http::Response beginPageSession(Call& call, qint64 account, Store::Role scope,
                                              const char* page);

} // namespace Itemhub::Routes
