#include "Server/Skyvault/Client/Dav/Download.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace Vs::Cloud {

namespace {

DriveResult cacheFailed(const std::string& action, const std::string& file, const std::string& why)
{
    return failed(CloudErrorState::CacheFailed, action, "\"" + file + "\" can't be written: " + why);
}

/// The new name itself has to survive a power failure, too.
void syncFolder(const QString& folder)
{
    const int handle = ::open(folder.toLocal8Bit().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return;
    static_cast<void>(::fsync(handle));
    ::close(handle);
}

} // namespace

DriveResult download(Session& session, const std::string& path, const std::string& target, DriveEntry& entry,
                     const DriveWatch& watch)
{
    const std::string action = session.action("Reading", path);
    if (DriveResult found = session.find(path, entry); !found.isOk())
        return found;
    if (entry.isFolder)
        return failed(CloudErrorState::NotFound, action, "it is a folder");
    const QFileInfo info(QString::fromStdString(target));
    QTemporaryFile file(info.path() + "/.quillet-download-XXXXXX");
    if (!file.open())
        return cacheFailed(action, target, file.errorString().toStdString());
    Request request{.method = "GET", .url = session.address.of(path)};
    request.sink = [&](const QByteArray& piece) -> DriveResult {
        if (file.write(piece) == piece.size())
            return {};
        return {CloudErrorState::CacheFailed,
                "\"" + target + "\" can't be written: " + file.errorString().toStdString()};
    };
    const Answer answer = session.http.ask(request, watch);
    if (!answer.isOk())
        return resultOf(answer, action);
    if (answer.status != 200)
        return failed(CloudErrorState::BadAnswer, action,
                      "the server answered " + std::to_string(answer.status));
    // The content may be newer than the entry looked up before; its own ETag counts.
    const std::string etag = answer.header("ETag").toStdString();
    const bool isOther = !etag.empty() && strongPart(etag) != strongPart(entry.etag);
    if (!isOther && std::uint64_t(answer.received) != entry.size)
        return failed(CloudErrorState::BadAnswer, action,
                      "of " + std::to_string(entry.size) + " bytes " + std::to_string(answer.received) +
                          " came");
    if (isOther) {
        entry.etag = etag;
        entry.size = static_cast<std::uint64_t>(answer.received);
        if (const auto time = timeOf(answer.header("Last-Modified").toStdString());
            time.time_since_epoch().count() > 0)
            entry.modified = time;
    }
    if (!file.flush() || ::fsync(file.handle()) != 0 ||
        ::rename(file.fileName().toLocal8Bit().constData(), target.c_str()) != 0)
        return cacheFailed(action, target, std::strerror(errno));
    file.setAutoRemove(false);
    syncFolder(info.path());
    return {};
}

} // namespace Vs::Cloud
