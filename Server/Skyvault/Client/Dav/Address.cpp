#include "Server/Skyvault/Client/Dav/Address.h"

namespace Vs::Cloud {

namespace {

/// Whether it is a path without any encoding, as most in a long listing are.
bool isPlainPath(QByteArrayView reference)
{
    const auto isPlain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' ||
               c == '.' || c == '-' || c == '_' || c == '~';
    };
    return reference.startsWith('/') && !reference.startsWith("//") &&
           std::all_of(reference.begin(), reference.end(), isPlain);
}

/// The decoded names of an encoded path, whose trailing slash is ignored. An empty name, from two slashes in
/// a row, means that the path leads nowhere.
std::optional<QByteArrayList> namesOf(QByteArray path)
{
    QByteArrayList names;
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

std::optional<QByteArrayList> namesOf(const QUrl& url)
{
    return namesOf(url.path(QUrl::FullyEncoded).toLatin1());
}

} // namespace

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

std::optional<QByteArrayList> Address::namesIn(QByteArrayView reference) const
{
    const QUrl url = QUrl::fromEncoded(reference.toByteArray(), QUrl::TolerantMode);
    const bool isHere = url.host().isEmpty() || url.host().compare(m_root.host(), Qt::CaseInsensitive) == 0;
    return url.isValid() && isHere ? namesOf(url) : std::nullopt;
}

std::optional<std::string> Address::pathOf(QByteArrayView reference) const
{
    const QByteArrayView text = reference.trimmed();
    if (isPlainPath(text))
        return pathOfPlain(text);
    const auto names = namesIn(text);
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

// Without decoding, and without copying each name.
std::optional<std::string> Address::pathOfPlain(QByteArrayView text) const
{
    if (text.endsWith('/'))
        text.chop(1);
    std::string path;
    qsizetype number = 0;
    while (!text.isEmpty()) {
        text = text.sliced(1); // The slash.
        const qsizetype end = text.indexOf('/');
        const QByteArrayView name = end < 0 ? text : text.first(end);
        text = text.sliced(name.size());
        if (number < m_names.size() ? name != m_names.at(number) : !isFileName(name))
            return std::nullopt;
        if (number++ >= m_names.size())
            path.append(1, '/').append(name.data(), size_t(name.size()));
    }
    if (number < m_names.size())
        return std::nullopt;
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
