#include "Server/Skyvault/Client/Dav/Account.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Vs::Cloud {

namespace {

const auto kEntry = QStringLiteral("/remote.php/");

/// The "data" of a response of the server's own API; empty if there is none.
QJsonObject dataOf(Session& session, const QUrl& base, const QString& path)
{
    QUrl url = base;
    url.setPath(base.path() + path);
    url.setQuery(QStringLiteral("format=json"));
    const Answer answer =
        session.http.ask({.method = "GET",
                          .url = url,
                          .headers = {{"OCS-APIRequest", "true"}, {"Accept", "application/json"}}});
    if (!answer.isOk())
        return {};
    return QJsonDocument::fromJson(answer.content).object()["ocs"].toObject()["data"].toObject();
}

QUrl below(const QUrl& base, const QString& path, const QString& name = {})
{
    QUrl url = base;
    url.setPath(base.path(QUrl::FullyEncoded) + path + QString::fromLatin1(QUrl::toPercentEncoding(name)),
                QUrl::TolerantMode);
    return url;
}

void readCapabilities(const QJsonObject& data, Service& service)
{
    const QJsonObject all = data["capabilities"].toObject();
    service.chunkedUpload = all["dav"].toObject()["chunking"].toString().toDouble() >= 1.0;
    service.versions = all["files"].toObject()["versioning"].toBool();
    const QJsonArray sums = all["checksums"].toObject()["supportedTypes"].toArray();
    service.checksums = sums.contains(QJsonValue("SHA1"));
    service.hasComments = all["files"].toObject()["comments"].toBool(true);
}

} // namespace

DriveResult recognize(Session& session)
{
    DavItem root;
    DriveResult result = session.look("/", root, "<D:current-user-principal/>");
    if (!result.isOk())
        return result;
    if (!root.entry.isFolder)
        return failed(CloudErrorState::NotFound, session.action("Looking at", "/"), "it is not a folder");
    if (session.user.empty()) {
        const QString principal = root.properties[QStringLiteral("current-user-principal")];
        session.user = principal.section('/', -1, -1, QString::SectionSkipEmpty).toStdString();
    }
    const QString path = session.address.root().path();
    const qsizetype entry = path.indexOf(kEntry);
    if (entry < 0)
        return {};
    QUrl base = session.address.root();
    base.setPath(path.left(entry));
    const QJsonObject user = dataOf(session, base, QStringLiteral("/ocs/v2.php/cloud/user"));
    const QString id = user["id"].toString();
    if (id.isEmpty())
        return {};
    const QString display = user["display-name"].toString(user["displayname"].toString());
    session.user = (display.isEmpty() ? id : display).toStdString();
    session.service.web = base;
    session.service.foldersHaveEtags = true; // Clients that synchronize such a drive rely on them.
    readCapabilities(dataOf(session, base, QStringLiteral("/ocs/v2.php/cloud/capabilities")),
                     session.service);
    if (path.startsWith(base.path() + "/remote.php/webdav"))
        session.address = Address(below(base, QStringLiteral("/remote.php/dav/files/"), id));
    if (session.service.chunkedUpload)
        session.service.uploads = below(base, QStringLiteral("/remote.php/dav/uploads/"), id);
    if (session.service.hasComments)
        session.service.comments = below(base, QStringLiteral("/remote.php/dav/comments/"));
    return {};
}

void addCapabilities(const Session& session, DriveTraits& traits)
{
    traits.chunkedUpload = session.service.chunkedUpload;
    traits.versions = session.service.versions;
    traits.checksums = session.service.checksums;
}

} // namespace Vs::Cloud
