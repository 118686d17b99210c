#include "Services/Itemhub/Routes/TokenRoutes.h"

#include "Services/Itemhub/Access/Authentication.h"
#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Routes/Password.h"

namespace Itemhub::Routes {

namespace {

constexpr qint64 kHour = 3600LL * 1000;
constexpr qint64 kLongestHours = 24LL * 366;
constexpr qint64 kUsualHours = 24LL * 30;

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

    const Store::Account account = accountOf(call, customer, name, password);
    const Access::Granted granted = changing(call, [&] {
        noteSignIn(call, customer, account, label);
        return Access::grantBearer(
            call.store, {.account = account.id, .scope = scope, .label = label, .lifetimeMs = hours * kHour});
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
