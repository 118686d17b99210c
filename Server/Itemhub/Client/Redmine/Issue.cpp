#include "Server/Itemhub/Client/Redmine/Issue.h"

#include <QRegularExpression>

#include <algorithm>
#include <map>
#include <tuple>

namespace Vs::Itemhub::Redmine {
namespace {

// The tracker's own numbers have 31 bits.
constexpr int kBits = 31;

/// Null and missing texts become empty.
std::string textOrNone(const JsonReader& json, const char* name)
{
    return json.has(name) ? json.text(name) : std::string();
}

std::string author(const JsonReader& json, const char* name, const NameOf& nameOf)
{
    return json.has(name) ? nameOf({json.object(name), json.action()}) : std::string();
}

/// The files that came with a note.
std::vector<std::int64_t> filesOf(const JsonReader& journal)
{
    std::vector<std::int64_t> files;
    for (const auto& each : journal.list("details")) {
        const JsonReader detail(each.toObject(), journal.action());
        if (detail.text("property") == "attachment" && detail.has("new_value"))
            files.push_back(std::strtoll(detail.text("name").c_str(), nullptr, 10));
    }
    return files;
}

File fileOf(const JsonReader& json, const NameOf& nameOf)
{
    File file;
    file.id = json.id("id");
    file.name = json.text("filename");
    file.author = author(json, "author", nameOf);
    file.createdAt = json.text("created_on");
    file.size = static_cast<std::uint64_t>(json.number("filesize", 0));
    file.note = noteOf(textOrNone(json, "description"), file.name);
    return file;
}

} // namespace

std::string textOf(const FileNote& note)
{
    return note.docType + ", from version " + std::to_string(note.madeFrom) + ", SHA-256 " + note.sha256;
}

FileNote noteOf(const std::string& description, const std::string& fileName)
{
    static const QRegularExpression ours(
        QStringLiteral("^([A-Za-z0-9]*), from version ([0-9]{1,9}), SHA-256 ([0-9a-f]{64})$"));
    const auto found = ours.match(QString::fromStdString(description));
    if (!found.hasMatch())
        return {fileName.ends_with(".vlra") ? "VeloraDocType" : "", 0, {}};
    return {found.captured(1).toStdString(), found.captured(2).toLongLong(), found.captured(3).toStdString()};
}

std::vector<File> Issue::versionsOf(const std::string& name) const
{
    std::vector<File> found;
    std::copy_if(files.begin(), files.end(), std::back_inserter(found),
                 [&](const File& file) { return file.name == name; });
    return found;
}

const std::string& Issue::nameOf(std::int64_t file, const std::string& action) const
{
    const auto found =
        std::find_if(files.begin(), files.end(), [file](const File& each) { return each.id == file; });
    if (found == files.end())
        throw Web::ItemhubException(Web::ItemhubException::Kind::NotFound, action + " failed: the issue " +
                                                                               std::to_string(values.id) +
                                                                               " has no such file any more");
    return found->name;
}

Web::ItemValues itemOf(const JsonReader& issue, const NameOf& nameOf)
{
    Web::ItemValues values;
    values.id = issue.id("id");
    values.workspaceId = JsonReader(issue.object("project"), issue.action()).id("id");
    values.caption = issue.text("subject");
    values.description = textOrNone(issue, "description");
    values.revision = 1;
    values.createdBy = author(issue, "author", nameOf);
    values.createdAt = issue.text("created_on");
    values.changedAt = issue.text("updated_on");
    return values;
}

Issue issueOf(const JsonReader& json, const NameOf& nameOf)
{
    Issue issue;
    issue.values = itemOf(json, nameOf);
    for (const auto& each : json.list("attachments"))
        issue.files.push_back(fileOf({each.toObject(), json.action()}, nameOf));
    std::map<std::int64_t, std::tuple<std::string, std::string, std::int64_t>> notes;
    for (const auto& each : json.list("journals")) {
        const JsonReader journal(each.toObject(), json.action());
        const std::string note = textOrNone(journal, "notes"), time = journal.text("created_on");
        const std::vector<std::int64_t> came = filesOf(journal);
        for (const std::int64_t file : came)
            notes[file] = {note, time, journal.id("id")};
        if (came.empty() && !note.empty())
            issue.comments.push_back({journal.id("id"), author(journal, "user", nameOf), note, time});
    }
    for (File& file : issue.files) {
        file.attachedAt = file.createdAt;
        if (const auto found = notes.find(file.id); found != notes.end())
            std::tie(file.label, file.attachedAt, file.change) = found->second;
    }
    std::sort(issue.files.begin(), issue.files.end(), [](const File& one, const File& other) {
        return std::tie(one.change, one.id) < std::tie(other.change, other.id);
    });
    return issue;
}

Web::Version versionOf(const File& file, std::int64_t number)
{
    Web::Version version;
    version.number = number;
    version.label = file.label;
    version.author = file.author;
    version.createdAt = file.createdAt;
    version.sha256 = file.note.sha256;
    version.size = file.size;
    version.madeFrom = file.note.sha256.empty() ? number - 1 : file.note.madeFrom;
    return version;
}

std::int64_t attachmentId(std::int64_t issue, std::int64_t file)
{
    return issue << kBits | file;
}

std::int64_t issueOfAttachment(std::int64_t attachment)
{
    return attachment >> kBits;
}

std::int64_t fileOfAttachment(std::int64_t attachment)
{
    return attachment & ((std::int64_t(1) << kBits) - 1);
}

} // namespace Vs::Itemhub::Redmine
