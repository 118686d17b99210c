#include "Server/Network/Json.h"

#include <QJsonDocument>
#include <QRandomGenerator>

#include <array>

namespace Vs::Network {

QJsonObject objectOf(const Answer& answer)
{
    return answer.isOk() ? QJsonDocument::fromJson(answer.content).object() : QJsonObject();
}

QJsonObject getJson(Http& http, const QUrl& url)
{
    return objectOf(http.ask({.method = "GET", .url = url, .headers = {{"Accept", "application/json"}}}));
}

Answer postForm(Http& http, const QUrl& url, const QUrlQuery& form, const Watch& watch)
{
    // In a form, a plus sign means a space.
    QByteArray body = form.toString(QUrl::FullyEncoded).toUtf8();
    body.replace('+', "%2B");
    return http.ask(
        {.method = "POST",
         .url = url,
         .headers = {{"Content-Type", "application/x-www-form-urlencoded"}, {"Accept", "application/json"}},
         .body = body},
        watch);
}

QByteArray randomName()
{
    std::array<quint32, 8> bits{};
    QRandomGenerator::system()->fillRange(bits.data(), bits.size());
    const QByteArray bytes(reinterpret_cast<const char*>(bits.data()), sizeof(bits));
    return bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

} // namespace Vs::Network
