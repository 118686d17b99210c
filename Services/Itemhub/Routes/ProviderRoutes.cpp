#include "Services/Itemhub/Routes/ProviderRoutes.h"

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Access/PageSession.h"
#include "Services/Itemhub/Routes/DashboardRoutes.h"
#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Routes/ProgramSignIn.h"
#include "Services/Itemhub/Store/Identities.h"

#include <cstdio>

namespace Itemhub::Routes {

namespace {

constexpr qint64 kVisitMs = 10LL * 60 * 1000;
constexpr const char* kByProvider = " by the provider"; ///< For administrators to read.

Access::Provider& providerOf(Call& call)
{
    if (!call.service.provider.isThere())
        throw Http::Problem(404, "no_provider", "This service knows no provider of sign-ins.");
    return call.service.provider;
}

/// Begins a visit. @returns the provider's address, and the cookie that the browser comes back with
std::pair<QString, std::string> begin(Call& call, qint64 account, const QString& wish)
{
    constexpr size_t kBytes = 32;
    Access::Provider& provider = providerOf(call);
    const Access::Provider::Visit visit{Access::randomText(kBytes), Access::randomText(kBytes),
                                        Access::randomText(kBytes),
                                        QString::fromStdString(pageBase(call)) + "/dashboard/back"};
    call.service.database.giveBack();
    QString place;
    try {
        place = provider.place(visit);
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "quillet-itemhub: %s\n", error.what());
        throw Http::Problem(502, "provider", "The provider of sign-ins cannot be reached.");
    }
    Store::addVisit(call.store, {.hash = Access::hashOf(visit.state),
                                 .account = account,
                                 .verifier = visit.verifier,
                                 .nonce = visit.nonce,
                                 .expiresAt = Store::now() + kVisitMs,
                                 .wish = wish});
    return {place, Access::visitCookie(visit.state, pageBase(call))};
}

Http::Response sent(const std::pair<QString, std::string>& begun)
{
    Http::Response response;
    response.status = 303;
    response.headers = {{"Location", begun.first.toStdString()}, {"Set-Cookie", begun.second}};
    return response;
}

/// The browser comes from another site, and wouldn't send the new session's cookie on a redirect chain that
/// began there; so the page is loaded afresh.
Http::Response entered(Http::Response response, const std::string& place)
{
    std::erase_if(response.headers, [](const auto& header) { return header.first == "Location"; });
    response.status = 200;
    response.type = "text/html";
    response.headers.emplace_back("Content-Security-Policy", "default-src 'none'; frame-ancestors 'none'");
    response.body = "<!DOCTYPE html><meta http-equiv=\"refresh\" content=\"0; url=" + place +
                    "\"><title>Itemhub</title><a href=\"" + place + "\">Itemhub</a>";
    return response;
}

SignInPage pageOf(const Call& call, const QString& wish)
{
    if (!wish.isEmpty())
        return pageFor(call, ProgramWish::ofQuery(wish), "../oauth/authorize");
    SignInPage page;
    page.kind = SignInPage::Kind::Dashboard;
    page.languages = call.request.header("Accept-Language");
    page.action = "../dashboard";
    return page;
}

Http::Response refused(const Call& call, int status, const char* problem, const QString& wish = {})
{
    Http::Response response = pageOf(call, wish).response(problem);
    response.status = status;
    return response;
}

Http::Response linked(Call& call, qint64 account, const QString& subject)
{
    const bool isFree =
        Store::linkIdentity(call.store, call.service.provider.config().issuer, subject, account);
    if (isFree)
        call.audit("provider linked", subject);
    return isFree ? entered({}, "../dashboard#/account") : refused(call, 409, "provider_taken");
}

} // namespace

Http::Response goToProvider(Call& call)
{
    return sent(begin(call, 0, {}));
}

Http::Response goToProviderForProgram(Call& call)
{
    // No other site's page may sign a program in without the user having seen what it asks for.
    Access::requireOwnPage(call.request);
    return sent(begin(call, 0, ProgramWish::of(queryOf(call)).query()));
}

Http::Response linkProvider(Call& call)
{
    const auto [place, cookie] = begin(call, call.account(), {});
    Http::Response response = answer({{"url", place}});
    response.headers.emplace_back("Set-Cookie", cookie);
    return response;
}

Http::Response unlinkProvider(Call& call)
{
    return changing(call, [&] {
        if (!Store::unlinkIdentities(call.store, call.account()))
            throw Http::Problem(404, "not_found", "The account is linked to no provider.");
        call.audit("provider unlinked", call.caller.accountName);
        return nothing();
    });
}

Http::Response backFromProvider(Call& call)
{
    const auto given = [&call](const char* name) {
        return QString::fromStdString(call.request.parameter(name).value_or(""));
    };
    Access::Provider& provider = providerOf(call);
    const QString state = given("state");
    // Only the browser that was sent there may come back: otherwise somebody could trick another into using
    // his account.
    const auto visit = state == Access::visitOf(call.request)
                           ? Store::takeVisit(call.store, Access::hashOf(state))
                           : std::nullopt;
    const QString issuer = given("iss");
    if (!visit || given("code").isEmpty() || (!issuer.isEmpty() && issuer != provider.config().issuer))
        return refused(call, 400, "provider_failed");
    call.service.database.giveBack();
    QString subject;
    try {
        subject = provider.subjectOf({state, visit->verifier, visit->nonce,
                                      QString::fromStdString(pageBase(call)) + "/dashboard/back"},
                                     given("code"));
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "quillet-itemhub: %s\n", error.what());
        return refused(call, 502, "provider_failed", visit->wish);
    }
    return changing(call, [&] {
        const auto account = visit->account
                                 ? std::nullopt
                                 : Store::accountOfIdentity(call.store, provider.config().issuer, subject);
        call.caller.account = visit->account ? visit->account : account ? account->id : 0;
        call.caller.tenant = Store::tenantOf(call.store, call.caller.account);
        if (visit->account)
            return linked(call, visit->account, subject);
        if (!account || account->disabled) {
            call.audit("sign-in refused", subject);
            return refused(call, 403, "provider_unknown", visit->wish);
        }
        if (!visit->wish.isEmpty()) {
            const ProgramWish wish = ProgramWish::ofQuery(visit->wish);
            call.audit("sign-in", wish.client + kByProvider);
            return backToProgram(call, wish);
        }
        call.audit("sign-in", QStringLiteral("Browser") + kByProvider);
        return entered(beginPageSession(call, account->id, Store::Role::Admin, ""), "../dashboard");
    });
}

} // namespace Itemhub::Routes
