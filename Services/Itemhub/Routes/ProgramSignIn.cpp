#include "Services/Itemhub/Routes/ProgramSignIn.h"

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Store/Codes.h"

#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

namespace Itemhub::Routes {

namespace {

constexpr qint64 kCodeLifetimeMs = 2LL * 60 * 1000;

[[noreturn]] void refuse(const std::string& why)
{
    // Shown here: it is not known yet whether the address to return to is the program's.
    throw Http::Problem(400, "bad_sign_in", "The program's request cannot be taken: " + why);
}

/// Only the loopback address in numeric form: a name could resolve to somebody else's.
bool isOfThisMachine(const QUrl& url)
{
    return url.isValid() && url.scheme() == "http" && url.host() == "127.0.0.1" && url.userInfo().isEmpty() &&
           !url.hasFragment();
}

QString newCode(Call& call, const ProgramWish& wish)
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

/// By the names that programs use.
std::vector<std::pair<QString, QString>> fieldsOf(const ProgramWish& wish)
{
    return {{"response_type", "code"}, {"client_id", wish.client},         {"redirect_uri", wish.redirect},
            {"state", wish.state},     {"code_challenge", wish.challenge}, {"code_challenge_method", "S256"}};
}

} // namespace

ProgramWish ProgramWish::of(const Field& field)
{
    static const QRegularExpression hash("\\A[A-Za-z0-9_-]{43}\\z");
    constexpr qsizetype kClient = 64, kLongest = 255;
    const ProgramWish wish{field("client_id"), field("redirect_uri"), field("state"),
                           field("code_challenge")};
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

ProgramWish ProgramWish::ofQuery(const QString& query)
{
    const QUrlQuery fields(query);
    return of([&fields](const char* name) { return fields.queryItemValue(name, QUrl::FullyDecoded); });
}

QString ProgramWish::query() const
{
    QUrlQuery query;
    for (const auto& [name, value] : fieldsOf(*this))
        query.addQueryItem(name, QString::fromLatin1(QUrl::toPercentEncoding(value)));
    return query.toString(QUrl::FullyEncoded);
}

Field queryOf(const Call& call)
{
    return [&call](const char* name) {
        return QString::fromStdString(call.request.parameter(name).value_or(""));
    };
}

SignInPage pageFor(const Call& call, const ProgramWish& wish, const QString& place)
{
    SignInPage page;
    page.languages = call.request.header("Accept-Language");
    page.action = place;
    page.hidden = fieldsOf(wish);
    page.goesTo = QUrl(wish.redirect).toString(QUrl::RemovePath | QUrl::RemoveQuery);
    if (call.service.provider.isThere()) {
        page.provider = call.service.provider.title();
        page.providerPlace = place.chopped(QString("authorize").size()) + "provider?" + wish.query();
    }
    return page;
}

Http::Response backToProgram(Call& call, const ProgramWish& wish)
{
    QUrl target(wish.redirect);
    QUrlQuery query(target);
    const auto add = [&query](const char* name, const QString& value) {
        query.addQueryItem(name, QString::fromLatin1(QUrl::toPercentEncoding(value)));
    };
    add("code", newCode(call, wish));
    add("state", wish.state);
    add("iss", QString::fromStdString(call.base));
    target.setQuery(query);
    Http::Response response;
    response.status = 303;
    response.headers = {{"Location", target.toString(QUrl::FullyEncoded).toStdString()}};
    return response;
}

} // namespace Itemhub::Routes
