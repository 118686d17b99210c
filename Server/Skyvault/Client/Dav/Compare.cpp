#include "Server/Skyvault/Client/Dav/Compare.h"

#include <QCryptographicHash>
#include <QFile>

namespace Vs::Cloud {

DriveResult hasContent(Session& session, const std::string& path, const std::string& local, std::string& etag)
{
    QFile file(QString::fromStdString(local));
    const std::string action = session.action("Comparing", path);
    if (!file.open(QIODevice::ReadOnly))
        return failed(CloudErrorState::CacheFailed, action, "\"" + local + "\" can't be read");
    Request request{.method = "GET", .url = session.address.of(path)};
    request.sink = [&](const QByteArray& piece) -> DriveResult {
        if (file.read(piece.size()) == piece)
            return {};
        return {CloudErrorState::Changed, "the content differs"};
    };
    const Answer answer = session.http.ask(request);
    etag = answer.header("ETag").toStdString();
    if (!answer.isOk())
        return resultOf(answer, action);
    return file.atEnd() ? DriveResult() : failed(CloudErrorState::Changed, action, "the content differs");
}

QByteArray sha1Of(const std::string& local)
{
    QFile file(QString::fromStdString(local));
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return {};
    return hash.result().toHex();
}

} // namespace Vs::Cloud
