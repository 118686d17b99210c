#include "Server/Network/Origin.h"

#include <QHostAddress>
#include <QStringDecoder>

#include <algorithm>

namespace Vs::Network {

namespace {

constexpr qsizetype kLongestName = 255;

bool isLoopback(const QString& host)
{
    return host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 ||
           QHostAddress(host).isLoopback();
}

int portOf(const QUrl& url)
{
    return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
}

bool isAscii(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
}

} // namespace

bool isProtected(const QUrl& url)
{
    return url.scheme() == QLatin1String("https") ||
           (url.scheme() == QLatin1String("http") && isLoopback(url.host()));
}

bool isSameOrigin(const QUrl& one, const QUrl& other)
{
    return one.scheme() == other.scheme() && one.host().compare(other.host(), Qt::CaseInsensitive) == 0 &&
           portOf(one) == portOf(other);
}

std::string hostOf(const QUrl& url)
{
    std::string host = url.host().toStdString();
    if (url.port() > 0)
        host += ':' + std::to_string(url.port());
    return host;
}

bool isFileName(QByteArrayView name)
{
    if (name.isEmpty() || name.size() > kLongestName || name == "." || name == "..")
        return false;
    // A backslash separates names on other systems, and document paths are compared as if it did here.
    const bool clean = std::none_of(name.begin(), name.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7f || c == '/' || c == '\\';
    });
    if (!clean || isAscii(name))
        return clean;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(name);
    return !decoder.hasError() && !text.contains(QChar(0x2028)) && !text.contains(QChar(0x202e));
}

} // namespace Vs::Network
