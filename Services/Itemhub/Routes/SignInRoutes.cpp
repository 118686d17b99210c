#include "Services/Itemhub/Routes/SignInRoutes.h"

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Access/PageSession.h"
#include "Services/Itemhub/Blobs/Digest.h"
#include "Services/Itemhub/Routes/Form.h"
#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Routes/Password.h"
#include "Services/Itemhub/Routes/SignInPage.h"
#include "Services/Itemhub/Store/Codes.h"

#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

namespace Itemhub::Routes {

namespace {

constexpr qint64 kCodeLifetimeMs = 2LL * 60 * 1000;
constexpr qint64 kTokenLifetimeMs = 30LL * 24 * 3600 * 1000;

/// What a program asks for.
struct Wish
{
    QString client, redirect, state, challenge;
};

[[noreturn]] void refuse(const std::string& why)
{
    // Shown here: nobody knows yet whether the address to go back to is the program's.
    throw Http::Problem(400, "bad_sign_in", "The program's request cannot be taken: " + why);
}

/// Only this machine's own address, by its number: a name could be somebody else's.
bool isOfThisMachine(const QUrl& url)
{
    return url.isValid() && url.scheme() == "http" && url.host() == "127.0.0.1" && url.userInfo().isEmpty() &&
           !url.hasFragment();
}

Wish wishOf(const Field& field)
{
    static const QRegularExpression hash("\\A[A-Za-z0-9_-]{43}\\z");
    constexpr qsizetype kClient = 64, kLongest = 255;
    Wish wish{field("client_id"), field("redirect_uri"), field("state"), field("code_challenge")};
    if (wish.redirect.size() > kLongest || !isOfThisMachine(QUrl(wish.redirect, QUrl::StrictMode)))
        refuse("redirect_uri must be an http address of 127.0.0.1.");
    if (field("response_type") != "code")
        refuse("response_type must be \"code\".");
    if (field("code_challenge_method") != "S256" || !hash.match(wish.challenge).hasMatch())
        refuse("code_challenge must be an S256 hash.");
    if (wish.client.isEmpty() || wish.client.size() > kClient)
        refuse("client_id must have from 1 to 64 characters.");
    if (wish.state.size() > kLongest)
        refuse("state must not have more than 255 characters.");
    return wish;
}

SignInPage pageFor(const Call& call, const Wish& wish)
{
    SignInPage page;
    page.languages = call.request.header("Accept-Language");
    page.hidden = {{"response_type", "code"},          {"client_id", wish.client},
                   {"redirect_uri", wish.redirect},    {"state", wish.state},
                   {"code_challenge", wish.challenge}, {"code_challenge_method", "S256"}};
    page.goesTo = QUrl(wish.redirect).toString(QUrl::RemovePath | QUrl::RemoveQuery);
    return page;
}

QString newCode(Call& call, const Wish& wish)
{
    constexpr size_t kBytes = 32;
    QString code = Access::randomText(kBytes);
    Store::addCode(call.store, {.hash = Access::hashOf(code),
                                .account = call.account(),
                                .client = wish.client,
                                .redirect = wish.redirect,
                                .challenge = wish.challenge,
                                .expiresAt = Store::now() + kCodeLifetimeMs});
    return code;
}

Http::Response backToProgram(const Call& call, const Wish& wish, const QString& code)
{
    QUrl target(wish.redirect);
    QUrlQuery query(target);
    const auto add = [&query](const char* name, const QString& value) {
        query.addQueryItem(name, QString::fromLatin1(QUrl::toPercentEncoding(value)));
    };
    add("code", code);
    add("state", wish.state);
    add("iss", QString::fromStdString(call.base));
    target.setQuery(query);
    Http::Response response;
    response.status = 303;
    response.headers = {{"Location", target.toString(QUrl::FullyEncoded).toStdString()}};
    return response;
}

Http::Response grantRefused(const char* error)
{
    return answer({{"error", error}}, 400);
}

/// What the program hashed when it began.
QByteArray challengeOf(const QString& verifier)
{
    Blobs::Digest digest;
    digest.add(verifier.toStdString());
    return QByteArray::fromStdString(digest.result())
        .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

} // namespace

Http::Response describeSignIn(Call& call)
{
    const QString base = QString::fromStdString(call.base);
    return answer({{"issuer", base},
                   {"authorization_endpoint", base + "/oauth/authorize"},
                   {"token_endpoint", base + "/oauth/token"},
                   {"response_types_supported", QJsonArray{"code"}},
                   {"grant_types_supported", QJsonArray{"authorization_code"}},
                   {"code_challenge_methods_supported", QJsonArray{"S256"}},
                   {"token_endpoint_auth_methods_supported", QJsonArray{"none"}},
                   {"authorization_response_iss_parameter_supported", true}});
}

Http::Response showSignIn(Call& call)
{
    const auto given = [&call](const char* name) {
        return QString::fromStdString(call.request.parameter(name).value_or(""));
    };
    SignInPage page = pageFor(call, wishOf(given));
    page.customer = given("customer");
    return page.response(nullptr);
}

Http::Response takeSignIn(Call& call)
{
    Access::requireOwnPage(call.request);
    const Field field = formOf(call);
    const Wish wish = wishOf(field);
    SignInPage page = pageFor(call, wish);
    page.customer = field("customer");
    page.account = field("account");
    try {
        const Store::Account account = accountOf(call, page.customer, page.account, field("password"));
        const QString code = changing(call, [&] {
            noteSignIn(call, page.customer, account, wish.client);
            return newCode(call, wish);
        });
        return backToProgram(call, wish, code);
    } catch (const Http::Problem& problem) {
        Http::Response response = page.response(problem.code.c_str());
        response.status = problem.status;
        response.headers.insert(response.headers.end(), problem.headers.begin(), problem.headers.end());
        return response;
    }
}

Http::Response changeCode(Call& call)
{
    const Field field = formOf(call);
    if (field("grant_type") != "authorization_code")
        return grantRefused("unsupported_grant_type");
    const auto code = Store::takeCode(call.store, Access::hashOf(field("code")));
    if (!code || code->client != field("client_id") || code->redirect != field("redirect_uri") ||
        !Access::equalSecrets(challengeOf(field("code_verifier")), code->challenge.toLatin1()))
        return grantRefused("invalid_grant");
    const Access::Granted granted = changing(call, [&] {
        return Access::grantBearer(call.store, {.account = code->account,
                                                .scope = Store::Role::Writer,
                                                .label = code->client,
                                                .lifetimeMs = kTokenLifetimeMs});
    });
    return answer({{"access_token", granted.token},
                   {"token_type", "Bearer"},
                   {"expires_in", kTokenLifetimeMs / 1000},
                   {"scope", Store::nameOf(Store::Role::Writer)}});
}

} // namespace Itemhub::Routes
