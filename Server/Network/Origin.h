#pragma once

#include <QByteArrayView>
#include <QUrl>

#include <string>

namespace Vs::Network {

/// Whether what goes there is protected: https, or this machine itself, which nobody listens to.
bool isProtected(const QUrl& url);
/// Whether both are the same server to whoever sends secrets: host, port and protocol.
bool isSameOrigin(const QUrl& one, const QUrl& other);
/// "host" or "host:port", for messages.
std::string hostOf(const QUrl& url);
/// Whether a file of this system could be called so, without leading anywhere else. UTF-8.
bool isFileName(QByteArrayView name);

} // namespace Vs::Network
