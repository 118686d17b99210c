#include "Server/Itemhub/Client/Answers.h"

#include "Server/Itemhub/Client/Values.h"

#include <QJsonDocument>

namespace Vs::Itemhub {
namespace {

using Kind = Web::ItemhubException::Kind;
using Network::Answer;

constexpr qsizetype kLongestDetail = 300;

/// A failure as the service describes it (application/problem+json).
struct Problem
{
    QString code, detail;
    Web::Version latest;
};

Problem problemOf(const Answer& answer)
{
    const QJsonObject object = QJsonDocument::fromJson(answer.content).object();
    Problem problem{object["code"].toString(), object["detail"].toString(), {}};
    // An issue tracker returns a list of sentences.
    for (const auto& each : object["errors"].toArray())
        problem.detail += (problem.detail.isEmpty() ? "" : " ") + each.toString();
    try {
        if (object["latest"].isObject())
            problem.latest = Values::version(JsonReader(object["latest"].toObject(), "A refused version"));
    } catch (const Web::PayloadException&) {
        // What is refused stays refused.
    }
    return problem;
}

Kind kindOf(int status, const QString& code)
{
    switch (status) {
    case 401:
        return Kind::NotSignedIn;
    case 403:
        return Kind::Forbidden;
    case 404:
    case 410:
        return Kind::NotFound;
    case 409:
        return code == "outdated" ? Kind::Outdated : Kind::Conflict;
    case 412:
    case 428:
        return Kind::Changed;
    case 413:
    case 507:
        return Kind::TooLarge;
    case 423:
    case 429:
        return Kind::Busy;
    default:
        break;
    }
    if (code == "content_missing" || code == "content_damaged")
        return Kind::Damaged;
    return status >= 500 ? Kind::Busy : Kind::BadRequest;
}

[[noreturn]] void fail(const Answer& answer, const std::string& action)
{
    const std::string why = answer.failure.detail.empty() ? "" : ": " + answer.failure.detail;
    switch (answer.failure.state) {
    case CloudErrorState::Cancelled:
        throw ItemStore::Cancelled();
    case CloudErrorState::BadAnswer:
        throw Web::PayloadException(action + " failed" + why);
    case CloudErrorState::CacheFailed:
        throw Web::ItemhubException(Kind::Local, action + " failed" + why);
    default:
        throw Web::ConnectionException(action + " failed" + why);
    }
}

} // namespace

std::string Answers::printable(const QString& text)
{
    QString clean = text.simplified().left(kLongestDetail);
    clean.removeIf([](QChar c) { return !c.isPrint(); });
    return clean.toStdString();
}

void Answers::check(const Answer& answer, const std::string& action)
{
    if (answer.isOk())
        return;
    if (answer.status == 0)
        fail(answer, action);
    if (answer.status < 400 || answer.status > 599)
        throw Web::PayloadException(action + " failed: the answer has the status " +
                                    std::to_string(answer.status));
    const Problem problem = problemOf(answer);
    std::string why = printable(problem.detail);
    if (why.empty())
        why = "the server answered " + std::to_string(answer.status) + ' ' +
              printable(QString::fromUtf8(answer.reason));
    throw Web::ItemhubException(kindOf(answer.status, problem.code), action + " failed: " + why,
                                problem.latest);
}

QJsonObject Answers::object(const Answer& answer, const std::string& action)
{
    check(answer, action);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(answer.content, &error);
    if (error.error != QJsonParseError::NoError)
        throw Web::PayloadException(action +
                                    " failed: the answer is not JSON: " + error.errorString().toStdString() +
                                    " at byte " + std::to_string(error.offset));
    if (!document.isObject())
        throw Web::PayloadException(action + " failed: the answer is not a JSON object");
    return document.object();
}

} // namespace Vs::Itemhub
