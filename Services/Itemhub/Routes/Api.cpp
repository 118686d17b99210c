#include "Services/Itemhub/Routes/Api.h"

#include "Services/Itemhub/Access/Authentication.h"
#include "Services/Itemhub/Blobs/Digest.h"
#include "Services/Itemhub/Routes/Route.h"
#include "Services/Itemhub/Routes/UploadRoutes.h"
#include "Services/Itemhub/Store/Uploads.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <system_error>

namespace Itemhub::Routes {

namespace {

using Http::Problem;
using Http::Response;
using Store::Role;

constexpr size_t kLongestJson = 64UL * 1024;

std::string joined(const std::vector<std::string>& texts)
{
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : ", ") + text;
    return all;
}

/// For the log, into which clients must not be able to inject lines.
std::string printable(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }, '?');
    return text;
}

Problem problemOf(const Store::StoreError& error)
{
    using Kind = Store::StoreError::Kind;
    switch (error.kind) {
    case Kind::Busy:
        return Problem(503, "busy", "The database is busy; try again.").with("Retry-After", "1");
    case Kind::Full:
        return Problem(507, "full", "The service's disk is full.");
    case Kind::Gone:
        return Problem(503, "no_database", "The service cannot reach its database.")
            .with("Retry-After", "10");
    case Kind::Newer:
        return Problem(503, "newer_database", "The database belongs to a newer version of the service.");
    case Kind::Conflict:
        return Problem(409, "conflict", "That exists already, or what it refers to is gone.");
    case Kind::Other:
        break;
    }
    return Problem(500, "failed", "The service failed; its log says why.");
}

Problem problemOf(const std::system_error& error)
{
    if (error.code().value() == ENOSPC || error.code().value() == EDQUOT)
        return Problem(507, "full", "The service's disk is full.");
    if (error.code() == std::errc::host_unreachable)
        return Problem(503, "no_contents", "Where the contents lie cannot be reached; try again later.");
    return Problem(500, "failed", "The service failed; its log says why.");
}

/// What a path refers to; nothing if the tenant doesn't have it.
std::optional<Store::Subject> subjectOf(Call& call)
{
    const qint64 tenant = call.tenant(), account = call.account();
    if (call.names.contains("attachment"))
        return Store::aboutAttachment(call.store, tenant, account, call.id("attachment"));
    if (call.names.contains("comment"))
        return Store::aboutComment(call.store, tenant, account, call.id("comment"));
    if (call.names.contains("item"))
        return Store::aboutItem(call.store, tenant, account, call.id("item"));
    return Store::aboutWorkspace(call.store, tenant, account, call.id("workspace"));
}

void requireScope(const Call& call, const Route& route)
{
    const bool reads = std::strcmp(route.method, "GET") == 0 || std::strcmp(route.method, "HEAD") == 0;
    const Role needed = std::max(route.role, reads ? Role::Reader : Role::Writer);
    if (call.caller.scope < needed)
        throw Problem(403, "scope",
                      "The token's scope is \"" + Store::nameOf(call.caller.scope).toStdString() +
                          "\"; this needs \"" + Store::nameOf(needed).toStdString() + "\".");
}

/// Throws unless the caller may call the route.
void admit(Call& call, const Route& route)
{
    if (route.asks == Asks::Nothing)
        return;
    call.caller =
        Access::authenticate(call.store, call.service.key, call.request, QString::fromStdString(call.base));
    requireScope(call, route);
    if (route.asks == Asks::Path) {
        const auto subject = subjectOf(call);
        // Without a role, the caller doesn't learn what exists.
        if (!subject || subject->role == Role::None)
            throw Problem(404, "not_found", "There is nothing at " + printable(call.request.path()) + '.');
        call.subject = *subject;
    } else if (route.asks == Asks::Tenant) {
        call.subject.role = Store::roleIn(call.store, call.account(), Store::kAllWorkspaces);
    } else if (route.asks == Asks::Anywhere) {
        call.subject.role = Store::highestRole(call.store, call.account());
    }
    if (route.asks != Asks::SignedIn && call.subject.role < route.role)
        throw Problem(403, "role",
                      "This needs the role \"" + Store::nameOf(route.role).toStdString() + "\".");
}

QJsonObject jsonOf(const std::string& text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    if (error.error != QJsonParseError::NoError)
        throw Problem(400, "bad_json",
                      "The request's body is not JSON: " + error.errorString().toStdString() + " at byte " +
                          std::to_string(error.offset) + '.');
    if (!document.isObject())
        throw Problem(400, "bad_json", "The request's body must be a JSON object.");
    return document.object();
}

Response responseOf(const Store::KeptAnswer& kept)
{
    Response response;
    response.status = kept.status;
    response.body = kept.body.toStdString();
    for (const QJsonValue header : QJsonDocument::fromJson(kept.headers.toUtf8()).array())
        response.headers.emplace_back(header[0].toString().toStdString(), header[1].toString().toStdString());
    response.headers.emplace_back("Idempotency-Replayed", "true");
    return response;
}

Store::KeptAnswer keptOf(const QString& request, const Response& response)
{
    QJsonArray headers;
    for (const auto& [name, value] : response.headers)
        headers.append(QJsonArray{QString::fromStdString(name), QString::fromStdString(value)});
    return {request, response.status, QJsonDocument(headers).toJson(QJsonDocument::Compact),
            QString::fromStdString(response.body)};
}

/// The response and its record are one transaction: whenever the process is killed, a repeated request does
/// nothing twice.
Response repeatable(Call& call, const Route& route, const std::string& text)
{
    constexpr size_t kLongestKey = 255;
    const std::string key = call.request.header("Idempotency-Key");
    if (key.empty() || key.size() > kLongestKey)
        throw Problem(400, "bad_key", "An Idempotency-Key must have from 1 to 255 characters.");
    const QString name = QString::fromStdString(key);
    const QString request = QString::fromStdString(
        Blobs::Digest::hexOf(call.request.method() + ' ' + call.request.path() + '\n' + text));
    return changing(call, [&] {
        if (const auto kept = Store::claimKey(call.store, call.account(), name, request)) {
            if (kept->request != request)
                throw Problem(422, "key_reused", "The Idempotency-Key was used for another request.");
            return responseOf(*kept);
        }
        Response response = route.handle(call);
        Store::keepAnswer(call.store, call.account(), name, keptOf(request, response));
        return response;
    });
}

Response handle(Call& call, const Route& route)
{
    if (route.takes != Takes::Json && route.takes != Takes::Secrets)
        return route.handle(call);
    if (const std::string type = call.request.header("Content-Type"); !type.starts_with("application/json"))
        throw Problem(415, "bad_type", "The request's body must be of the type application/json.");
    const std::string text = call.request.body(kLongestJson);
    call.body = jsonOf(text);
    if (route.takes == Takes::Json && call.request.method() == "POST" &&
        call.request.hasHeader("Idempotency-Key"))
        return repeatable(call, route, text);
    return route.handle(call);
}

} // namespace

Response Api::dispatch(Http::Request& request)
{
    if (!m_service.rateLimit.take(request.remoteAddress()))
        throw Problem(429, "too_many", "Too many requests come from this address.").with("Retry-After", "1");
    std::map<std::string, std::string> names;
    std::vector<std::string> others;
    const Route* const route = findRoute(request.method(), request.path(), names, others);
    if (request.method() == "OPTIONS" && !others.empty()) {
        Response response;
        response.status = 204;
        response.headers = {{"Allow", joined(others)}};
        addUploadAbilities(m_service, response);
        return response;
    }
    if (!route && !others.empty())
        throw Problem(405, "no_method", "This path has no " + printable(request.method()) + '.')
            .with("Allow", joined(others));
    if (!route)
        throw Problem(404, "not_found", "There is nothing at " + printable(request.path()) + '.');

    const std::string base = m_service.config.url.isEmpty() ? "http://" + request.header("Host")
                                                            : m_service.config.url.toStdString();
    Call call{m_service, request, Store::ThreadsConnection(m_service.database), {}, {}, std::move(names),
              {},        base};
    try {
        admit(call, *route);
    } catch (const Problem& problem) {
        if (problem.status == 403)
            call.audit("refused", QString::fromStdString(request.method() + ' ' + printable(request.path())));
        throw;
    }
    Response response = handle(call, *route);
    if (request.method() != "GET" && request.method() != "HEAD")
        m_service.events.wake();
    return response;
}

Response Api::answer(Http::Request& request)
{
    Response response = answerKeeping(request);
    m_service.database.giveBack();
    if (response.stream)
        response.stream = [this, stream = std::move(response.stream)](const Response::Write& write) {
            const bool goesOn = stream(write);
            m_service.database.giveBack();
            return goesOn;
        };
    return response;
}

Response Api::answerKeeping(Http::Request& request)
{
    const auto log = [&request](const char* what) {
        std::fprintf(stderr, "quillet-itemhub: %s %s: %s\n", request.method().c_str(),
                     printable(request.path()).c_str(), what);
    };
    Response response;
    try {
        response = dispatch(request);
    } catch (const Problem& problem) {
        response = Http::responseOf(problem);
    } catch (const Store::StoreError& error) {
        if (error.kind != Store::StoreError::Kind::Conflict)
            log(error.what());
        response = Http::responseOf(problemOf(error));
    } catch (const std::system_error& error) {
        log(error.what());
        response = Http::responseOf(problemOf(error));
    }
    // The resumable upload protocol requires this header in every response.
    if (request.hasHeader("Tus-Resumable"))
        response.headers.emplace_back("Tus-Resumable", "1.0.0");
    return response;
}

} // namespace Itemhub::Routes
