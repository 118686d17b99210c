#pragma once

#include <QByteArrayView>
#include <QUrl>

#include <string>

namespace Vs::Network {

/// Whether the connection is protected: https, or this machine itself, where nobody can listen in.
bool isProtected(const QUrl& url);
/// Whether secrets for one may be sent to the other: same host, port and protocol.
bool isSameOrigin(const QUrl& one, const QUrl& other);
/// "host" or "host:port", for messages.
std::string hostOf(const QUrl& url);
/// Whether this is a valid file name on this system that leads nowhere else. UTF-8.
bool isFileName(QByteArrayView name);

} // namespace Vs::Network
