#include "Server/Skyvault/Client/Dav/Comments.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

namespace Vs::Cloud {

namespace {

const auto kRemark = QStringLiteral("remark");
constexpr const char* kWanted = "<q:remark xmlns:q=\"urn:quillet\"/>";

/// Without the characters that XML doesn't allow.
QString plain(const std::string& text)
{
    QString result = QString::fromStdString(text);
    result.removeIf([](QChar c) { return c < QChar(' ') && c != QChar('\n') && c != QChar('\t'); });
    return result.trimmed();
}

bool isRefusal(int status)
{
    return status == 404 || status == 405 || status == 501;
}

/// The last part of the address that the server assigned to the new comment, if it is a number.
std::string madeId(const Answer& answer)
{
    const QByteArray address = answer.header("Content-Location");
    bool isNumber = false;
    const qulonglong id = address.mid(address.lastIndexOf('/') + 1).toULongLong(&isNumber);
    return isNumber ? std::to_string(id) : std::string();
}

/// Whether the newest comment, by number, has this text. Sets `id` to its number.
bool isNewest(Session& session, const QUrl& collection, const QString& text, std::string& id)
{
    const Address place(collection);
    qulonglong newest = 0;
    bool isOurs = false;
    MultiStatus reader(place, [&](DavItem&& item) {
        const qulonglong number = item.properties[QStringLiteral("id")].toULongLong();
        if (number <= newest)
            return;
        newest = number;
        isOurs = item.properties[QStringLiteral("message")] == text;
    });
    Request request{.method = "PROPFIND",
                    .url = collection,
                    .headers = {{"Depth", "1"}, {"Content-Type", "application/xml; charset=utf-8"}},
                    .body = propertiesWanted("<o:id/><o:message/>")};
    request.sink = [&](const QByteArray& piece) { return reader.add(piece); };
    if (!session.http.ask(request).isOk() || !reader.end().isOk() || !isOurs)
        return false;
    id = std::to_string(newest);
    return true;
}

} // namespace

DriveResult setRemark(Session& session, const std::string& path, const std::string& text)
{
    const std::string action = session.action("Commenting on", path);
    const QString remark = plain(text);
    const QByteArray body = "<?xml version=\"1.0\" encoding=\"utf-8\"?><D:propertyupdate xmlns:D=\"DAV:\" "
                            "xmlns:q=\"urn:quillet\"><D:set><D:prop><q:remark>" +
                            remark.toHtmlEscaped().toUtf8() +
                            "</q:remark></D:prop></D:set></D:propertyupdate>";
    const Answer answer = session.ask("PROPPATCH", path, {}, body);
    if (answer.status == 405 || answer.status == 501)
        return failed(CloudErrorState::Unsupported, action, "the server keeps no remarks");
    if (!answer.isOk() && !answer.isLost())
        return resultOf(answer, action);
    // Some servers report success and store nothing.
    DavItem item;
    if (DriveResult found = session.look(path, item, kWanted); !found.isOk())
        return found;
    if (item.properties[kRemark] == remark)
        return {};
    if (answer.isLost())
        return resultOf(answer, action);
    return answer.status == 207 ? failed(CloudErrorState::Unsupported, action, "the server keeps no remarks")
                                : failed(CloudErrorState::BadAnswer, action,
                                         "the server answered " + std::to_string(answer.status));
}

DriveResult comment(Session& session, const std::string& path, const std::string& text, std::string& id)
{
    const std::string action = session.action("Commenting on", path);
    DavItem item;
    const QByteArray wanted = QByteArray(kWanted) + "<o:fileid/>";
    if (DriveResult found = session.look(path, item, wanted); !found.isOk())
        return found;
    const QString file = item.properties[QStringLiteral("fileid")];
    if (!session.service.comments.isEmpty() && !file.isEmpty()) {
        QUrl url = session.service.comments;
        url.setPath(url.path() + "files/" + file);
        const QString message = plain(text);
        const QJsonObject remark{{"actorType", "users"}, {"verb", "comment"}, {"message", message}};
        const Answer answer = session.http.ask({.method = "POST",
                                                .url = url,
                                                .headers = {{"Content-Type", "application/json"}},
                                                .body = QJsonDocument(remark).toJson()});
        if (answer.status == 201) {
            id = madeId(answer);
            return {};
        }
        // Retrying could post it twice. Any other successful response may be a page of the network in
        // between.
        if ((answer.isOk() || mayBeDone(answer)) && isNewest(session, url, message, id))
            return {};
        if (answer.isOk())
            return failed(CloudErrorState::BadAnswer, action,
                          "the server answered " + std::to_string(answer.status));
        if (!isRefusal(answer.status))
            return resultOf(answer, action);
    }
    if (!session.traits.properties.mayHold())
        return failed(CloudErrorState::Unsupported, action, "the server keeps no remarks");
    // Earlier remarks are kept, one per line.
    QString remarks = item.properties[kRemark];
    if (!remarks.isEmpty())
        remarks += '\n';
    remarks += QDateTime::currentDateTimeUtc().toString(Qt::ISODate) + ' ' +
               QString::fromStdString(session.user) + ": " + QString::fromStdString(text);
    return setRemark(session, path, remarks.toStdString());
}

} // namespace Vs::Cloud
