#include "Server/Skyvault/Client/Dav/Session.h"

#include <QCryptographicHash>
#include <QSysInfo>

#include <unistd.h>

namespace Vs::Cloud {

std::string hiddenNameOf(const std::string& path, bool isLocked)
{
    QByteArray of = QByteArray::fromStdString(path);
    if (!isLocked)
        of += ' ' + QSysInfo::machineUniqueId() + ' ' + QByteArray::number(qint64(::getpid()));
    const QByteArray mark = QCryptographicHash::hash(of, QCryptographicHash::Sha1).toHex();
    return joined(parentOf(path), ownPrefix() + mark.toStdString());
}

bool mayBeDone(const Answer& answer)
{
    return answer.isLost() || answer.status == 502 || answer.status == 504 ||
           answer.failure.state == CloudErrorState::Cancelled;
}

Header onlyOver(const QByteArray& replaced, const std::string& etag)
{
    return {"If", "<" + replaced + "> ([" + QByteArray::fromStdString(etag) + "])"};
}

std::string strongPart(const std::string& etag)
{
    return etag.starts_with("W/") ? etag.substr(2) : etag;
}

Session::Session(const QUrl& root, DriveCredentials credentials)
    : http(std::move(credentials)), address(root), user(http.credentials().user)
{
}

std::string Session::action(const char* doing, const std::string& path) const
{
    return std::string(doing) + " \"" + path + "\" on " + address.host();
}

Answer Session::ask(const char* method, const std::string& path, Headers headers, const QByteArray& body,
                    const DriveWatch& watch)
{
    if (!body.isEmpty())
        headers.push_back({"Content-Type", "application/xml; charset=utf-8"});
    return http.ask({.method = method, .url = address.of(path), .headers = std::move(headers), .body = body},
                    watch);
}

DriveResult Session::look(const std::string& path, DavItem& item, const QByteArray& more)
{
    const std::string action = this->action("Looking at", path);
    bool found = false;
    MultiStatus reader(address, [&](DavItem&& each) {
        // Some servers omit a folder's trailing slash, and none should report another resource.
        if (each.entry.path == path) {
            item = std::move(each);
            found = true;
        }
    });
    Request request{.method = "PROPFIND",
                    .url = address.of(path, path == "/"),
                    .headers = {{"Depth", "0"}, {"Content-Type", "application/xml; charset=utf-8"}},
                    .body = propertiesWanted(more)};
    request.sink = [&](const QByteArray& piece) { return reader.add(piece); };
    const Answer answer = http.ask(request);
    if (!answer.isOk())
        return resultOf(answer, action);
    if (const DriveResult whole = reader.end(); answer.status != 207 || !whole.isOk())
        return failed(CloudErrorState::BadAnswer, action, whole.detail);
    if (!found)
        return failed(CloudErrorState::BadAnswer, action, "the answer is about something else");
    item.etagFromListing = !item.entry.etag.empty();
    if (!item.etagFromListing && !item.entry.isFolder) {
        const Answer head = http.ask({.method = "HEAD", .url = address.of(path)});
        if (!head.isOk())
            return resultOf(head, action);
        item.entry.etag = head.header("ETag").toStdString();
    }
    return {};
}

DriveResult Session::find(const std::string& path, DriveEntry& entry)
{
    DavItem item;
    DriveResult result = look(path, item);
    if (result.isOk())
        entry = std::move(item.entry);
    return result;
}

DriveResult Session::list(const std::string& folder, std::vector<DriveEntry>& entries,
                          const DriveWatch& watch, Names names, DriveEntry* itself)
{
    const std::string action = this->action("Listing", folder);
    entries.clear();
    DriveEntry listed;
    const std::string begin = joined(folder, {}), hidden = begin + ownPrefix();
    MultiStatus reader(address, [&](DavItem&& each) {
        const std::string& path = each.entry.path;
        if (path == folder)
            listed = std::move(each.entry);
        else if (path.starts_with(begin) && path.find('/', begin.size()) == path.npos &&
                 (names == Names::All || !path.starts_with(hidden)))
            entries.push_back(std::move(each.entry));
    });
    Request request{.method = "PROPFIND",
                    .url = address.of(folder, true),
                    .headers = {{"Depth", "1"}, {"Content-Type", "application/xml; charset=utf-8"}},
                    .body = propertiesWanted()};
    request.sink = [&](const QByteArray& piece) { return reader.add(piece); };
    const Answer answer = http.ask(request, watch);
    DriveResult result = resultOf(answer, action);
    if (result.isOk()) {
        const DriveResult whole = reader.end();
        if (answer.status != 207 || !whole.isOk())
            result = failed(CloudErrorState::BadAnswer, action, whole.detail);
        else if (!listed.isFolder)
            result = failed(CloudErrorState::NotFound, action, "it is not a folder");
    }
    if (!result.isOk())
        entries.clear();
    else if (itself)
        *itself = std::move(listed);
    return result;
}

DriveResult Session::makeFolder(const std::string& path)
{
    const std::string action = this->action("Making the folder", path);
    const Answer answer = http.ask({.method = "MKCOL", .url = address.of(path, true)});
    if (answer.status == 201)
        return {};
    // 405 means that something exists; a lost response means nothing, and neither does any other successful
    // one, which may be a page of the network in between.
    if (answer.isOk() || answer.status == 405 || answer.isLost()) {
        DriveEntry there;
        if (const DriveResult found = find(path, there); found.isOk())
            return there.isFolder ? DriveResult()
                                  : failed(CloudErrorState::NoFolders, action, "a file has this name");
        if (answer.isOk())
            return failed(CloudErrorState::BadAnswer, action,
                          "the server answered " + std::to_string(answer.status) +
                              ", but the folder is not there");
    }
    return resultOf(answer, action);
}

DriveResult Session::makeFolders(const std::string& path)
{
    if (!isDrivePath(path))
        return failed(CloudErrorState::BadName, action("Making the folder", path),
                      "no folder can have that name");
    DriveEntry there;
    DriveResult result = find(path, there);
    if (result.isOk() && !there.isFolder)
        return failed(CloudErrorState::NoFolders, action("Making the folder", path), "a file has this name");
    if (result.state != CloudErrorState::NotFound || path == "/")
        return result;
    result = makeFolders(parentOf(path));
    return result.isOk() ? makeFolder(path) : result;
}

DriveResult Session::remove(const std::string& path, Headers headers)
{
    const Answer answer = ask("DELETE", path, std::move(headers));
    if (answer.status == 404)
        return {};
    return resultOf(answer, action("Removing", path));
}

// Some servers recognize a folder only by its trailing slash.
void Session::removeLeftovers()
{
    leftovers.clear([this](std::string path) {
        const bool isFolder = path.ends_with('/');
        if (isFolder)
            path.pop_back();
        if (!isDrivePath(path) || !nameOf(path).starts_with(ownPrefix()))
            return true;
        const Answer answer = http.ask({.method = "DELETE", .url = address.of(path, isFolder)});
        return answer.isOk() || answer.status == 404;
    });
}

} // namespace Vs::Cloud
