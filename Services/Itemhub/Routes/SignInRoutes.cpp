#include "Services/Itemhub/Routes/SignInRoutes.h"

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Access/PageSession.h"
#include "Services/Itemhub/Blobs/Digest.h"
#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Routes/Password.h"
#include "Services/Itemhub/Routes/ProgramSignIn.h"
#include "Services/Itemhub/Store/Codes.h"

namespace Itemhub::Routes {

namespace {

constexpr qint64 kTokenLifetimeMs = 30LL * 24 * 3600 * 1000;

Http::Response grantRefused(const char* error)
{
    return answer({{"error", error}}, 400);
}

/// The challenge for a verifier: its hash, which the program sent at the start.
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
    const Field given = queryOf(call);
    SignInPage page = pageFor(call, ProgramWish::of(given), "authorize");
    page.customer = given("customer");
    return page.response(nullptr);
}

Http::Response takeSignIn(Call& call)
{
    Access::requireOwnPage(call.request);
    const Field field = formOf(call);
    const ProgramWish wish = ProgramWish::of(field);
    SignInPage page = pageFor(call, wish, "authorize");
    page.customer = field("customer");
    page.account = field("account");
    try {
        const Store::Account account = accountOf(call, page.customer, page.account, field("password"));
        return changing(call, [&] {
            noteSignIn(call, page.customer, account, wish.client);
            return backToProgram(call, wish);
        });
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
