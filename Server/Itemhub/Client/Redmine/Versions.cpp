#include "Server/Itemhub/Client/Redmine/Versions.h"

#include "Server/Itemhub/Client/Answers.h"
#include "Server/Itemhub/Client/Values.h"

#include <QUrlQuery>
#include <QUuid>

#include <algorithm>

namespace Vs::Itemhub::Redmine {
namespace {

using Kind = Web::ItemhubException::Kind;
using Network::Answer;

constexpr int kUnprocessable = 422;

/// The number of the file that an upload became.
std::int64_t fileOf(const std::string& token)
{
    return std::strtoll(token.c_str(), nullptr, 10);
}

std::string hashOf(const std::string& token)
{
    return token.substr(token.find('.') + 1);
}

std::string numbered(const char* what, std::int64_t id)
{
    return std::string(what) + ' ' + std::to_string(id);
}

/// In the form that our clients accept; on the tracker's page it is the file's address.
std::string addressOf(const Tracker& tracker, std::int64_t issue, std::int64_t file)
{
    return tracker.url("attachments/" + std::to_string(file), {{"issue", std::to_string(issue)}})
        .toString(QUrl::FullyEncoded)
        .toStdString();
}

std::vector<File>::const_iterator find(const std::vector<File>& files, std::int64_t id)
{
    return std::find_if(files.begin(), files.end(), [id](const File& file) { return file.id == id; });
}

} // namespace

Versions::Versions(Tracker& tracker, Reader& reader) : m_tracker(tracker), m_reader(reader) {}

std::vector<Web::Attachment> Versions::attachments(std::int64_t item, const Watch& watch)
{
    const Issue issue = m_reader.issue(item, numbered("Listing the files of the issue", item), watch);
    std::vector<Web::Attachment> found;
    for (const File& file : issue.files) {
        const std::vector<File> versions = issue.versionsOf(file.name);
        if (versions.front().id != file.id)
            continue;
        Web::AttachmentValues values;
        values.id = attachmentId(item, file.id);
        values.itemId = item;
        values.workspaceId = issue.values.workspaceId;
        values.name = file.name;
        values.docType = file.note.docType;
        values.latestVersion = static_cast<std::int64_t>(versions.size());
        values.uri = addressOf(m_tracker, item, file.id);
        found.emplace_back(std::move(values));
    }
    return found;
}

std::vector<Web::Version> Versions::versions(std::int64_t attachment, const Watch& watch)
{
    const std::string doing = numbered("Listing the versions in the issue", issueOfAttachment(attachment));
    const Issue issue = m_reader.issue(issueOfAttachment(attachment), doing, watch);
    std::vector<Web::Version> found;
    for (const File& file :
         issue.versionsOf(issue.nameOf(fileOfAttachment(attachment), m_tracker.action(doing))))
        found.push_back(versionOf(file, static_cast<std::int64_t>(found.size()) + 1));
    return found;
}

Content Versions::content(const std::string& uri, const Watch& watch)
{
    const std::string doing = "Looking for a file";
    std::string known = uri;
    if (known.ends_with(".xml"))
        known.resize(known.size() - 4);
    const QUrl below = m_tracker.below(known, doing);
    constexpr QLatin1String kFolder("attachments/");
    bool isFile = below.path().startsWith(kFolder), isIssue = false;
    const qint64 file = isFile ? below.path().mid(kFolder.size()).toLongLong(&isFile) : 0;
    const qint64 issue = QUrlQuery(below).queryItemValue("issue").toLongLong(&isIssue);
    if (!isFile || !isIssue || file < 1 || issue < 1)
        throw Web::ItemhubException(Kind::BadRequest, m_tracker.action(doing) + " failed: \"" +
                                                          Answers::printable(QString::fromStdString(uri)) +
                                                          "\" is not the address of a file of an issue");
    return contentOf(attachmentId(issue, file), 0, doing, watch);
}

Content Versions::content(std::int64_t attachment, std::int64_t version, const Watch& watch)
{
    return contentOf(attachment, version,
                     numbered("Reading a file of the issue", issueOfAttachment(attachment)), watch);
}

Content Versions::contentOf(std::int64_t attachment, std::int64_t number, const std::string& doing,
                            const Watch& watch)
{
    const Issue issue = m_reader.issue(issueOfAttachment(attachment), doing, watch);
    const std::vector<File> files =
        issue.versionsOf(issue.nameOf(fileOfAttachment(attachment), m_tracker.action(doing)));
    if (number < 0 || number > static_cast<std::int64_t>(files.size()))
        throw Web::ItemhubException(Kind::NotFound, m_tracker.action(doing) + " failed: version " +
                                                        std::to_string(number) + " does not exist");
    const size_t place = number == 0 ? files.size() - 1 : static_cast<size_t>(number) - 1;
    const File& file = files[place];
    const QUrl address = m_tracker.url("attachments/download/" + std::to_string(file.id));
    Content content;
    content.attachmentId = attachment;
    content.itemId = issue.values.id;
    content.workspaceId = issue.values.workspaceId;
    content.version = static_cast<std::int64_t>(place) + 1;
    content.file = Values::fileName(file.name);
    content.docType = files.front().note.docType;
    content.size = file.size;
    content.address = address.toString(QUrl::FullyEncoded).toStdString();
    content.sha256 = file.note.sha256.empty() ? hashed(file.id, address, doing, watch) : file.note.sha256;
    return content;
}

std::string Versions::hashed(std::int64_t file, const QUrl& address, const std::string& doing,
                             const Watch& watch)
{
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_hashes.find(file); found != m_hashes.end())
            return found->second;
    }
    const std::string hash = m_tracker.sha256(address, doing, watch);
    const std::lock_guard lock(m_mutex);
    return m_hashes[file] = hash;
}

std::string Versions::beginUpload(std::uint64_t size, const std::string& sha256)
{
    const std::string upload = QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
    const std::lock_guard lock(m_mutex);
    m_uploads[upload] = {size, sha256, {}};
    return upload;
}

Versions::Announced Versions::announced(const std::string& upload, const std::string& doing)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_uploads.find(upload);
    if (found == m_uploads.end())
        throw Web::ItemhubException(Kind::NotFound,
                                    m_tracker.action(doing) +
                                        " failed: the upload must be restarted from the beginning");
    return found->second;
}

std::uint64_t Versions::arrived(const std::string& upload)
{
    const Announced known = announced(upload, "Asking how far an upload is");
    return known.token.empty() ? 0 : known.size;
}

void Versions::upload(const std::string& upload, const std::string& file, const Watch& watch)
{
    const Announced known = announced(upload, "Uploading");
    const std::string token = m_tracker.upload(file, known.size, watch);
    if (hashOf(token) != known.sha256)
        throw Web::ItemhubException(Kind::Conflict,
                                    m_tracker.action("Uploading") +
                                        " failed: the tracker says that something else arrived");
    const std::lock_guard lock(m_mutex);
    m_uploads[upload].token = token;
}

MadeVersion Versions::add(const NewVersion& version, const Watch& watch)
{
    const std::string doing = "Attaching \"" + version.name + '"';
    const Announced upload = announced(version.upload, doing);
    const std::int64_t id = fileOf(upload.token);
    if (upload.token.empty())
        throw Web::ItemhubException(Kind::Conflict,
                                    m_tracker.action(doing) + " failed: its content hasn't arrived");
    const Issue before = m_reader.issue(version.itemId, doing, watch);
    const bool isNew = version.attachmentId == 0;
    const std::string name =
        isNew ? version.name : before.nameOf(fileOfAttachment(version.attachmentId), m_tracker.action(doing));
    const std::vector<File> known = before.versionsOf(name);
    // A version that an earlier request with this content made, and whose response was lost, isn't made
    // again.
    if (find(known, id) == known.end()) {
        if (!isNew)
            refuseOutdated(known, version.madeFrom, doing);
        attach(version, name,
               {isNew ? version.docType : known.front().note.docType, version.madeFrom, upload.sha256},
               upload.token, doing, watch);
    }
    const std::vector<File> now = m_reader.issue(version.itemId, doing, watch).versionsOf(name);
    const auto made = find(now, id);
    if (made == now.end())
        throw Web::ItemhubException(Kind::Forbidden, m_tracker.action(doing) +
                                                         " failed: the tracker left the file out, as it does "
                                                         "where the account may not change the issue");
    const std::int64_t number = made - now.begin() + 1;
    if (!isNew && number != version.madeFrom + 1) {
        // Somebody was faster between the check and the change.
        m_tracker.changed("DELETE", "attachments/" + std::to_string(id) + ".json", {}, doing, watch);
        std::vector<File> others(now.begin(), now.end());
        std::erase_if(others, [id](const File& file) { return file.id == id; });
        refuseOutdated(others, version.madeFrom, doing);
    }
    return {attachmentId(version.itemId, now.front().id), versionOf(*made, number)};
}

void Versions::refuseOutdated(const std::vector<File>& known, std::int64_t madeFrom,
                              const std::string& doing) const
{
    const auto count = static_cast<std::int64_t>(known.size());
    if (count != madeFrom)
        throw Web::ItemhubException(Kind::Outdated,
                                    m_tracker.action(doing) + " failed: it was made from version " +
                                        std::to_string(madeFrom) + ", and the newest one is " +
                                        std::to_string(count),
                                    versionOf(known.back(), count));
}

void Versions::attach(const NewVersion& version, const std::string& name, const FileNote& note,
                      const std::string& token, const std::string& doing, const Watch& watch)
{
    const QJsonObject file{{"token", QString::fromStdString(token)},
                           {"filename", QString::fromStdString(name)},
                           {"description", QString::fromStdString(textOf(note))}};
    QJsonObject issue{{"uploads", QJsonArray{file}}};
    if (!version.label.empty())
        issue["notes"] = QString::fromStdString(version.label);
    const std::string path = "issues/" + std::to_string(version.itemId) + ".json";
    Answer answer = m_tracker.change("PUT", path, {{"issue", issue}}, watch);
    // A file that belongs to an issue isn't attached twice, so retrying is harmless; why it is refused
    // then shows in the issue.
    const bool wasLost = answer.isLost();
    if (wasLost)
        answer = m_tracker.change("PUT", path, {{"issue", issue}}, watch);
    if (!wasLost || answer.status != kUnprocessable)
        Answers::check(answer, m_tracker.action(doing));
}

} // namespace Vs::Itemhub::Redmine
