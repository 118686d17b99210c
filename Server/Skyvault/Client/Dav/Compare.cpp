#include "Server/Skyvault/Client/Dav/Compare.h"

#include <QFile>

namespace Vs::Cloud {

bool hasContent(Session& session, const std::string& path, const std::string& local, std::string& etag)
{
    QFile file(QString::fromStdString(local));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    Request request{.method = "GET", .url = session.address.of(path)};
    request.sink = [&](const QByteArray& piece) -> DriveResult {
        if (file.read(piece.size()) == piece)
            return {};
        return {CloudErrorState::Changed, "the content differs"};
    };
    const Answer answer = session.http.ask(request);
    etag = answer.header("ETag").toStdString();
    return answer.isOk() && file.atEnd();
}

} // namespace Vs::Cloud
