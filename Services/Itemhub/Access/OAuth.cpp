#include "Services/Itemhub/Access/OAuth.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QUrl>

#include <algorithm>
#include <vector>

namespace Itemhub::Access {

QMap<QString, QString> signedParameters(const std::string& authorization)
{
    const QString text = QString::fromStdString(authorization);
    const QString scheme = "OAuth ";
    QMap<QString, QString> parameters;
    if (!text.startsWith(scheme, Qt::CaseInsensitive))
        return parameters;
    // Values are percent-encoded, so they contain neither commas nor quotes.
    for (const QString& entry : text.mid(scheme.size()).split(',')) {
        QString value = entry.section('=', 1).trimmed();
        if (value.size() >= 2 && value.startsWith('"') && value.endsWith('"'))
            value = value.mid(1, value.size() - 2);
        parameters.insert(QUrl::fromPercentEncoding(entry.section('=', 0, 0).trimmed().toUtf8()),
                          QUrl::fromPercentEncoding(value.toUtf8()));
    }
    return parameters;
}

QByteArray signatureBase(const Http::Request& request, const QMap<QString, QString>& parameters,
                         const QString& base)
{
    std::vector<QByteArray> pairs;
    const auto add = [&pairs](const QString& name, const QString& value) {
        pairs.push_back(QUrl::toPercentEncoding(name) + '=' + QUrl::toPercentEncoding(value));
    };
    for (auto entry = parameters.begin(); entry != parameters.end(); ++entry)
        if (entry.key() != "oauth_signature" && entry.key() != "realm")
            add(entry.key(), entry.value());
    for (const auto& [name, value] : request.parameters())
        add(QString::fromStdString(name), QString::fromStdString(value));
    std::sort(pairs.begin(), pairs.end());

    QByteArray joined;
    for (const QByteArray& pair : pairs)
        joined += (joined.isEmpty() ? "" : "&") + pair;
    const std::string& target = request.target();
    const QString address = base + QString::fromStdString(target.substr(0, target.find('?')));
    return QByteArray::fromStdString(request.method()) + '&' + QUrl::toPercentEncoding(address) + '&' +
           QUrl::toPercentEncoding(QString::fromLatin1(joined));
}

QByteArray signatureOf(const QByteArray& base, const QString& method, const QString& consumerSecret,
                       const QString& tokenSecret)
{
    const QByteArray key =
        QUrl::toPercentEncoding(consumerSecret) + '&' + QUrl::toPercentEncoding(tokenSecret);
    if (method == "HMAC-SHA1")
        return QMessageAuthenticationCode::hash(base, key, QCryptographicHash::Sha1).toBase64();
    if (method == "HMAC-SHA256")
        return QMessageAuthenticationCode::hash(base, key, QCryptographicHash::Sha256).toBase64();
    return {};
}

} // namespace Itemhub::Access
