#include "Services/Itemhub/Routes/TokenRoutes.h"

#include "Services/Itemhub/Access/Authentication.h"
#include "Services/Itemhub/Blobs/Digest.h"
#include "Services/Itemhub/Routes/Json.h"

namespace Itemhub::Routes {

namespace {

constexpr qint64 kHour = 3600LL * 1000;
constexpr qint64 kLongestHours = 24 * 366;
constexpr qint64 kUsualHours = 24 * 30;

/// Who is made to wait: the account, from wherever, and the address, for whatever account.
QStringList throttledBy(const Call& call, const QString& customer, const QString& name)
{
    const auto hashed = [](const QString& text) {
        return QString::fromStdString(Blobs::Digest::hexOf(text.toStdString()));
    };
    return {hashed("account\n" + customer + '\n' + name),
            hashed("address\n" + QString::fromStdString(call.request.remoteAddress()))};
}

Http::Problem refused()
{
    return Http::Problem(401, "sign_in", "The customer, the name or the password is not right.")
        .with("WWW-Authenticate", "Bearer realm=\"itemhub\"");
}

} // namespace

Http::Response signIn(Call& call)
{
    Members members(call.body);
    const QString name = members.name("account"), password = members.secret("password");
    const Store::Role scope = members.role("scope", Store::Role::Writer);
    const QString label = members.optionalName("label").value_or("signed in");
    const qint64 hours = members.number("hours", 1, kLongestHours).value_or(kUsualHours);
    members.end();
    const QString customer = QString::fromStdString(call.request.parameter("customer").value_or(""));

    const QStringList subjects = throttledBy(call, customer, name);
    for (const QString& subject : subjects)
        if (const qint64 wait = Store::waitOf(call.store, subject); wait > 0)
            throw Http::Problem(429, "too_many_failures", "Too many wrong passwords; wait before the next.")
                .with("Retry-After", std::to_string(wait / 1000 + 1));

    const auto tenant = Store::findTenant(call.store, customer);
    const auto account = tenant ? Store::findAccount(call.store, *tenant, name) : std::nullopt;
    // The same work for names that there aren't: how long it takes tells nobody anything.
    const bool matches = Access::passwordMatches(account ? account->passwordHash : QString(), password);
    if (!matches || account->disabled) {
        changing(call, [&] {
            for (const QString& subject : subjects)
                Store::noteFailure(call.store, subject);
            call.caller.tenant = tenant.value_or(0);
            call.audit("sign-in refused", name);
            return 0;
        });
        throw refused();
    }
    call.caller.tenant = account->tenant;
    call.caller.account = account->id;
    const Access::Granted granted = changing(call, [&] {
        Store::forgetFailures(call.store, subjects[0]);
        call.audit("sign-in", label);
        return Access::grantBearer(
            call.store,
            {.account = account->id, .scope = scope, .label = label, .lifetimeMs = hours * kHour});
    });
    return created({{"id", granted.id},
                    {"token", granted.token},
                    {"scope", Store::nameOf(scope)},
                    {"expiresAt", timeText(granted.expiresAt)}},
                   "/tokens/" + std::to_string(granted.id));
}

Http::Response renewToken(Call& call)
{
    const Access::Granted granted = changing(call, [&] {
        return Access::exchange(call.store, call.service.key, call.request, QString::fromStdString(call.base),
                                kUsualHours * kHour);
    });
    Http::Response response;
    response.type = "application/x-www-form-urlencoded";
    response.body =
        QString("oauth_token=%1&oauth_token_secret=%2&oauth_session_handle=%3&oauth_expires_in=%4")
            .arg(granted.token, granted.tokenSecret, granted.sessionHandle)
            .arg(kUsualHours * kHour / 1000)
            .toStdString();
    return response;
}

Http::Response tellSession(Call& call)
{
    return answer({{"account", call.caller.accountName},
                   {"customer", call.caller.tenantName},
                   {"scope", Store::nameOf(call.caller.scope)},
                   {"tokenId", call.caller.id},
                   {"expiresAt", timeText(call.caller.expiresAt)}});
}

Http::Response listTokens(Call& call)
{
    QJsonArray tokens;
    for (const Store::TokenRecord& token : Store::tokensOf(call.store, call.account()))
        tokens.append(QJsonObject{{"id", token.id},
                                  {"label", token.label},
                                  {"scope", Store::nameOf(token.scope)},
                                  {"createdAt", timeText(token.createdAt)},
                                  {"expiresAt", timeText(token.expiresAt)}});
    return answer({{"tokens", tokens}});
}

Http::Response deleteToken(Call& call)
{
    const qint64 token = call.id("token");
    const bool removed = changing(call, [&] {
        call.audit("token removed", QString::number(token));
        return Store::removeToken(call.store, call.account(), token);
    });
    if (!removed)
        throw Http::Problem(404, "not_found", "The account has no such token.");
    return nothing();
}

} // namespace Itemhub::Routes
