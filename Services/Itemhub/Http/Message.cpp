#include "Services/Itemhub/Http/Message.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QString>

#include <unistd.h>

namespace Itemhub::Http {

std::string Request::body(size_t longest)
{
    std::string text;
    bool tooLong = false;
    const bool whole = readBody(
        [&](const char* data, size_t size) {
            tooLong = size > longest - text.size();
            if (!tooLong)
                text.append(data, size);
            return !tooLong;
        },
        nullptr);
    if (tooLong)
        throw Problem(413, "too_large",
                      "The request's body must not exceed " + std::to_string(longest) + " bytes.");
    if (!whole)
        throw Problem(400, "cut", "The request's body ended early.");
    return text;
}

Response::File::~File()
{
    ::close(descriptor);
}

std::string jsonString(std::string_view text)
{
    // An array of one string, minus its brackets.
    const QByteArray array =
        QJsonDocument(QJsonArray{QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))})
            .toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2).toStdString();
}

Response responseOf(const Problem& problem)
{
    Response response;
    response.status = problem.status;
    response.headers = problem.headers;
    response.type = "application/problem+json";
    response.body = R"({"status":)" + std::to_string(problem.status) + R"(,"code":)" +
                    jsonString(problem.code) + R"(,"detail":)" + jsonString(problem.what());
    if (!problem.members.empty())
        response.body += ',' + problem.members;
    response.body += '}';
    return response;
}

} // namespace Itemhub::Http
