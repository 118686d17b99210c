#include "Server/Skyvault/Client/Http/Address.h"

#include <QHostAddress>
#include <QStringDecoder>

#include <algorithm>

namespace Vs::Cloud {

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

/// The names of a path as it travels, decoded. Nothing stands between two slashes but in a path that leads
/// nowhere, save at its end.
std::optional<QByteArrayList> namesOf(const QUrl& url)
{
    QByteArrayList names;
    QByteArray path = url.path(QUrl::FullyEncoded).toLatin1();
    if (path.endsWith('/'))
        path.chop(1);
    if (path.isEmpty())
        return names;
    if (!path.startsWith('/'))
        return std::nullopt;
    for (const QByteArray& name : path.mid(1).split('/'))
        names.append(QByteArray::fromPercentEncoding(name));
    return names;
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

bool isFileName(const QByteArray& name)
{
    if (name.isEmpty() || name.size() > kLongestName || name == "." || name == "..")
        return false;
    // A backslash parts names elsewhere, and paths of documents are compared as if it did here.
    const bool clean = std::none_of(name.begin(), name.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7f || c == '/' || c == '\\';
    });
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(name);
    return clean && !decoder.hasError() && !text.contains(QChar(0x2028)) && !text.contains(QChar(0x202e));
}

Address::Address(QUrl root) : m_root(std::move(root))
{
    QString path = m_root.path(QUrl::FullyEncoded);
    while (path.endsWith('/'))
        path.chop(1);
    m_root.setPath(path, QUrl::TolerantMode);
    m_root.setQuery(QString());
    m_root.setFragment(QString());
    m_root.setUserInfo(QString());
    m_names = namesOf(m_root).value_or(QByteArrayList());
}

QUrl Address::of(const std::string& path, bool folder) const
{
    QByteArray encoded = m_root.path(QUrl::FullyEncoded).toLatin1();
    encoded += QByteArray::fromStdString(path).toPercentEncoding("/");
    if (folder && !encoded.endsWith('/'))
        encoded += '/';
    QUrl url = m_root;
    url.setPath(QString::fromLatin1(encoded), QUrl::TolerantMode);
    return url;
}

std::optional<std::string> Address::pathOf(const QByteArray& reference) const
{
    const QUrl url = QUrl::fromEncoded(reference.trimmed(), QUrl::TolerantMode);
    if (!url.isValid() ||
        (!url.host().isEmpty() && url.host().compare(m_root.host(), Qt::CaseInsensitive) != 0))
        return std::nullopt;
    const auto names = namesOf(url);
    if (!names || names->size() < m_names.size() ||
        !std::equal(m_names.begin(), m_names.end(), names->begin()))
        return std::nullopt;
    std::string path;
    for (qsizetype i = m_names.size(); i < names->size(); ++i) {
        if (!isFileName(names->at(i)))
            return std::nullopt;
        path += '/' + names->at(i).toStdString();
    }
    return path.empty() ? "/" : path;
}

std::string parentOf(const std::string& path)
{
    const size_t slash = path.find_last_of('/');
    return slash == path.npos || slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path)
{
    return path.substr(path.find_last_of('/') + 1);
}

std::string joined(const std::string& folder, const std::string& name)
{
    return (folder == "/" ? "" : folder) + '/' + name;
}

bool isDrivePath(const std::string& path)
{
    if (path == "/")
        return true;
    if (path.empty() || path.front() != '/')
        return false;
    const QByteArrayList names = QByteArray::fromStdString(path.substr(1)).split('/');
    return std::all_of(names.begin(), names.end(), isFileName);
}

} // namespace Vs::Cloud
