#include "Services/Itemhub/Routes/DashboardRoutes.h"

#include "Services/Itemhub/Access/Authentication.h"
#include "Services/Itemhub/Access/PageSession.h"
#include "Services/Itemhub/Routes/DashboardPage.h"
#include "Services/Itemhub/Routes/Form.h"
#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Routes/Password.h"
#include "Services/Itemhub/Routes/SignInPage.h"
#include "Services/Itemhub/Store/Identities.h"
#include "Services/Itemhub/Store/PageLinks.h"

namespace Itemhub::Routes {

namespace {

constexpr qint64 kLinkLifetimeMs = 60LL * 1000;
constexpr const char* kLabel = "Browser"; ///< The label of a session in the list of tokens.

/// @param problem as for SignInPage::response
Http::Response signInForm(const Call& call, const QString& customer, const QString& account,
                          const char* problem, const QString& action = "dashboard")
{
    SignInPage page;
    page.kind = SignInPage::Kind::Dashboard;
    page.languages = call.request.header("Accept-Language");
    page.action = action;
    page.provider = call.service.provider.title();
    page.providerPlace = action + "/provider";
    page.customer = customer;
    page.account = account;
    return page.response(problem);
}

std::optional<Store::TokenRecord> sessionOf(Call& call)
{
    if (!Access::pageToken(call.request))
        return std::nullopt;
    try {
        return Access::authenticate(call.store, call.service.key, call.request,
                                    QString::fromStdString(call.base));
    } catch (const Http::Problem& problem) {
        if (problem.status != 401)
            throw;
        return std::nullopt; // It has ended; the user signs in again.
    }
}

} // namespace

std::string pageBase(const Call& call)
{
    const QString& own = call.service.config.pageUrl;
    return own.isEmpty() ? call.base : own.toStdString();
}

Http::Response beginPageSession(Call& call, qint64 account, Store::Role scope, const char* page)
{
    const Access::Granted granted = Access::grantBearer(
        call.store,
        {.account = account, .scope = scope, .label = kLabel, .lifetimeMs = Access::kPageSessionMs});
    Http::Response response;
    response.status = 303;
    response.headers = {{"Location", page},
                        {"Set-Cookie", Access::pageCookie(granted.token, pageBase(call))}};
    return response;
}

Http::Response showDashboard(Call& call)
{
    const auto session = sessionOf(call);
    if (!session)
        return signInForm(call, QString::fromStdString(call.request.parameter("customer").value_or("")), {},
                          nullptr);
    return DashboardPage{
        call.request.header("Accept-Language"),
        session->accountName,
        session->tenantName,
        Access::pageProof(call.service.key, session->selector),
        !call.service.config.pageUrl.isEmpty(),
        Store::nameOf(session->scope),
        call.service.provider.title(),
        Store::hasIdentity(call.store, call.service.provider.config().issuer, session->account),
        session->scope == Store::Role::Admin &&
            Store::roleIn(call.store, session->account, Store::kAllWorkspaces) == Store::Role::Admin}
        .response();
}

Http::Response signInToDashboard(Call& call)
{
    Access::requireOwnPage(call.request);
    const Field field = formOf(call);
    const QString customer = field("customer"), name = field("account");
    try {
        const Store::Account account = accountOf(call, customer, name, field("password"));
        return changing(call, [&] {
            noteSignIn(call, customer, account, kLabel);
            return beginPageSession(call, account.id, Store::Role::Admin, "dashboard");
        });
    } catch (const Http::Problem& problem) {
        Http::Response response = signInForm(call, customer, name, problem.code.c_str());
        response.status = problem.status;
        response.headers.insert(response.headers.end(), problem.headers.begin(), problem.headers.end());
        return response;
    }
}

Http::Response signOutOfDashboard(Call& call)
{
    // Programs revoke their tokens by number.
    if (!call.request.hasHeader("Authorization"))
        changing(call, [&] {
            call.audit("token removed", QString::number(call.caller.id));
            return Store::removeToken(call.store, call.account(), call.caller.id);
        });
    Http::Response response = nothing();
    response.headers.emplace_back("Set-Cookie", Access::endedPageCookie(pageBase(call)));
    return response;
}

Http::Response showDashboardFile(Call& call)
{
    return dashboardFile(call.text("file"), call.request);
}

Http::Response makeDashboardLink(Call& call)
{
    constexpr size_t kCodeBytes = 32;
    QString code = Access::randomText(kCodeBytes);
    const qint64 end = Store::now() + kLinkLifetimeMs;
    Store::addPageLink(call.store, {.hash = Access::hashOf(code),
                                    .account = call.account(),
                                    .scope = std::min(call.caller.scope, Store::Role::Writer),
                                    .expiresAt = end});
    const std::string place = pageBase(call) + "/dashboard/enter?code=" + code.toStdString();
    return created({{"url", QString::fromStdString(place)}, {"expiresAt", timeText(end)}}, place);
}

Http::Response enterDashboard(Call& call)
{
    const QString code = QString::fromStdString(call.request.parameter("code").value_or(""));
    const auto link = Store::takePageLink(call.store, Access::hashOf(code));
    if (!link) {
        Http::Response response = signInForm(call, {}, {}, "link_used", "../dashboard");
        response.status = 410;
        return response;
    }
    return changing(call, [&] {
        call.caller.account = link->account;
        call.audit("sign-in", kLabel);
        return beginPageSession(call, link->account, link->scope, "../dashboard");
    });
}

} // namespace Itemhub::Routes
