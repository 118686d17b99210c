#pragma once

#include "Services/Itemhub/Http/Message.h"

#include <QMap>
#include <QString>

namespace Itemhub::Access {

/// The OAuth 1.0 parameters of a request's Authorization header, decoded; empty if it has none.
[[nodiscard]] QMap<QString, QString> signedParameters(const std::string& authorization);

/// The signature base string (RFC 5849, 3.4.1).
/// @param base scheme and host of the service as clients address it, without a slash at the end
[[nodiscard]] QByteArray signatureBase(const Http::Request& request, const QMap<QString, QString>& parameters,
                                       const QString& base);

/// The signature of that text. @param method HMAC-SHA1 or HMAC-SHA256; for all others the result is empty
[[nodiscard]] QByteArray signatureOf(const QByteArray& base, const QString& method,
                                     const QString& consumerSecret, const QString& tokenSecret);

} // namespace Itemhub::Access
