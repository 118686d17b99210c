#include "Server/Itemhub/Client/Signature.h"

#include "Server/Network/Json.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QUrlQuery>

#include <algorithm>
#include <vector>

namespace Vs::Itemhub {
namespace {

using Pair = std::pair<QByteArray, QByteArray>; ///< Of a parameter, both encoded.

QByteArray encoded(const QString& text)
{
    return QUrl::toPercentEncoding(text);
}

QByteArray encoded(const std::string& text)
{
    return encoded(QString::fromStdString(text));
}

/// The signature base string: method, address, and all parameters in byte order.
QByteArray baseOf(const Network::Request& request, const std::vector<Pair>& parameters)
{
    std::vector<QByteArray> pairs;
    for (const auto& [name, value] : parameters)
        pairs.push_back(name + '=' + value);
    for (const auto& [name, value] : QUrlQuery(request.url).queryItems(QUrl::FullyDecoded))
        pairs.push_back(encoded(name) + '=' + encoded(value));
    std::sort(pairs.begin(), pairs.end());
    QByteArray joined;
    for (const QByteArray& pair : pairs)
        joined += (joined.isEmpty() ? "" : "&") + pair;
    QUrl address = request.url;
    address.setQuery(QString());
    address.setFragment(QString());
    return request.method + '&' + encoded(address.toString(QUrl::FullyEncoded)) + '&' +
           encoded(QString::fromLatin1(joined));
}

} // namespace

QByteArray signatureOf(const Network::Request& request, const Access& access, std::int64_t now,
                       const std::string& handle)
{
    std::vector<Pair> parameters{
        {"oauth_consumer_key", encoded(access.consumerKey)},
        {"oauth_nonce", Network::randomName()},
        {"oauth_signature_method", "HMAC-SHA256"},
        {"oauth_timestamp", QByteArray::number(qint64(now))},
        {"oauth_token", encoded(access.token)},
        {"oauth_version", "1.0"},
    };
    if (!handle.empty())
        parameters.emplace_back("oauth_session_handle", encoded(handle));
    const QByteArray key = encoded(access.consumerSecret) + '&' + encoded(access.tokenSecret);
    const QByteArray signature =
        QMessageAuthenticationCode::hash(baseOf(request, parameters), key, QCryptographicHash::Sha256)
            .toBase64();
    parameters.emplace_back("oauth_signature", encoded(QString::fromLatin1(signature)));
    QByteArray header;
    for (const auto& [name, value] : parameters)
        header += (header.isEmpty() ? "OAuth " : ", ") + name + "=\"" + value + '"';
    return header;
}

} // namespace Vs::Itemhub
