#include "Services/Itemhub/Routes/ProgramRoutes.h"

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Store/ProgramRequests.h"

#include <QJsonDocument>
#include <QRegularExpression>

namespace Itemhub::Routes {

namespace {

using Store::ProgramRequest;

constexpr qint64 kLifetimeMs = 60LL * 1000;
constexpr qint64 kMostWaiting = 10;
constexpr const char* kScheme = "quillet:ticket/";
/// The one command whose arguments the page doesn't know: they are a token, issued to whoever takes the
/// request.
constexpr const char* kTokenCommand = "ItemhubAuthenticateWithTokenCommand";
constexpr qint64 kTokenLifetimeMs = 30LL * 24 * 3600 * 1000;

bool isName(const QString& text)
{
    static const QRegularExpression name("\\A[A-Za-z]{1,64}\\z");
    return name.match(text).hasMatch();
}

/// Arguments for a program: named texts and numbers. Which ones are valid, the program decides.
QJsonObject argumentsOf(const QJsonValue& given)
{
    constexpr qsizetype kMost = 16;
    QJsonObject arguments = given.toObject();
    if (!given.isObject() || arguments.size() > kMost)
        throw badMember("args", "must be an object of up to 16 arguments");
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument)
        if (!isName(argument.key()) || !(argument->isString() || argument->isDouble()) ||
            argument->toString().size() > Members::kText)
            throw badMember("args", "must have texts and numbers by names of letters");
    return arguments;
}

Http::Problem gone()
{
    // Don't reveal whose it was, or whether it ever existed.
    return Http::Problem(404, "no_request", "The request no longer exists.");
}

/// The response to whoever took it.
Http::Response taken(Call& call, const std::optional<ProgramRequest>& request)
{
    if (!request)
        throw gone();
    QJsonObject arguments = QJsonDocument::fromJson(request->arguments.toUtf8()).object();
    if (request->name == kTokenCommand) {
        const Access::Granted granted = Access::grantBearer(call.store, {.account = call.account(),
                                                                         .scope = call.caller.scope,
                                                                         .label = QStringLiteral("Quillet"),
                                                                         .lifetimeMs = kTokenLifetimeMs});
        call.audit("token added", QString::number(granted.id));
        arguments = {{"ItemhubTenantUri", QString::fromStdString(call.base)},
                     {"ItemhubTenant", call.caller.tenantName},
                     {"OAuthToken", granted.token}};
    }
    return answer({{"id", request->id}, {"name", request->name}, {"args", arguments}});
}

} // namespace

Http::Response askProgram(Call& call)
{
    Members members(call.body);
    const QString name = members.name("name");
    (void)members.has("args");
    members.end();
    const QJsonObject arguments = argumentsOf(call.body.value("args"));
    if (!isName(name))
        throw badMember("name", "must be the name of a command");
    if (name == kTokenCommand && !arguments.isEmpty())
        throw badMember("args", "must be empty: the token is made when it is taken");
    constexpr size_t kTicketBytes = 32;
    const QString ticket = Access::randomText(kTicketBytes);
    const ProgramRequest request{.account = call.account(),
                                 .name = name,
                                 .arguments = QJsonDocument(arguments).toJson(QJsonDocument::Compact),
                                 .expiresAt = Store::now() + kLifetimeMs};
    return changing(call, [&] {
        if (Store::waitingProgramRequests(call.store, call.account()) >= kMostWaiting)
            throw Http::Problem(429, "too_many_waiting",
                                "The program has not taken what was asked for before.")
                .with("Retry-After", "10");
        const qint64 id = Store::addProgramRequest(call.store, request, Access::hashOf(ticket));
        call.note({.kind = "program.asked", .request = id, .forSelf = true});
        return created({{"id", id},
                        {"state", Store::nameOf(request.state)},
                        {"ticket", kScheme + ticket},
                        {"expiresAt", timeText(request.expiresAt)}},
                       "/program/requests/" + std::to_string(id));
    });
}

Http::Response tellRequest(Call& call)
{
    const auto request = Store::findProgramRequest(call.store, call.account(), call.id("request"));
    if (!request)
        throw gone();
    return answer({{"id", request->id},
                   {"name", request->name},
                   {"state", Store::nameOf(request->state)},
                   {"detail", request->detail},
                   {"expiresAt", timeText(request->expiresAt)}});
}

Http::Response takeRequest(Call& call)
{
    return changing(call, [&] {
        return taken(call, Store::takeProgramRequest(call.store, call.account(), call.id("request")));
    });
}

Http::Response redeemTicket(Call& call)
{
    Members members(call.body);
    const QString ticket = members.secret("ticket");
    members.end();
    return changing(call, [&] {
        return taken(call, Store::takeProgramTicket(call.store, call.account(), Access::hashOf(ticket)));
    });
}

Http::Response answerRequest(Call& call)
{
    using State = ProgramRequest::State;
    constexpr qsizetype kDetail = 500;
    Members members(call.body);
    const QString state = members.name("state");
    const QString detail = members.text("detail", {}).left(kDetail);
    members.end();
    for (const State known : {State::Done, State::Refused, State::Failed}) {
        if (state != Store::nameOf(known))
            continue;
        return changing(call, [&] {
            const qint64 id = call.id("request");
            if (!Store::answerProgramRequest(call.store, call.account(), id, known, detail))
                throw gone();
            call.note({.kind = "program.answered", .request = id, .forSelf = true});
            return nothing();
        });
    }
    throw badMember("state", "must be done, refused or failed");
}

} // namespace Itemhub::Routes
