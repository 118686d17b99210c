#include "Server/Itemhub/Private/QueueEntry.h"

#include "Server/Base/Exception.h"
#include "Server/Base/JsonFile.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/Strings.h"
#include "Server/Itemhub/Private/Places.h"
#include "Server/Itemhub/Private/Texts.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Vs::Itemhub {

namespace fs = boost::filesystem;

namespace {

constexpr const char* kRecordEnding = ".json";
constexpr const char* kLinkEnding = ".file";

struct Named
{
    const char* name;
    std::string QueueEntry::*text;
};
constexpr Named kTexts[] = {{"label", &QueueEntry::label},
                            {"key", &QueueEntry::key},
                            {"reason", &QueueEntry::reason},
                            {"sha256", &QueueEntry::sha256},
                            {"upload", &QueueEntry::upload}};

constexpr std::pair<const char*, bool QueueEntry::*> kFlags[] = {
    {"found", &QueueEntry::isFound}, {"onTop", &QueueEntry::onTop}, {"posted", &QueueEntry::isPosted}};

constexpr std::pair<const char*, std::int64_t QueueEntry::*> kNumbers[] = {
    {"item", &QueueEntry::itemId},
    {"attachment", &QueueEntry::attachmentId},
    {"madeFrom", &QueueEntry::madeFrom}};

constexpr std::pair<const char*, QueueEntry::State> kStates[] = {{"waiting", QueueEntry::State::Waiting},
                                                                 {"failed", QueueEntry::State::Failed},
                                                                 {"outdated", QueueEntry::State::Outdated}};

fs::path withEnding(std::uint64_t serial, const std::string& account, const char* ending)
{
    char name[32];
    std::snprintf(name, sizeof name, "%012llu", static_cast<unsigned long long>(serial));
    return Places::queue(account) / (std::string(name) + ending);
}

/// False if the name is taken already.
bool linkContent(const fs::path& from, const fs::path& to)
{
    if (::link(from.c_str(), to.c_str()) == 0)
        return true;
    const int cause = errno;
    // A file system without hard links, or at its limit of them.
    boost::system::error_code error;
    if (cause == EEXIST || (fs::copy_file(from, to, error) && !error))
        return cause != EEXIST;
    throw Exception(from.string() + " cannot be queued as " + to.string() + ": " + std::strerror(cause));
}

/// The highest of all files, including links without a record.
std::uint64_t lastSerial(const fs::path& folder)
{
    std::uint64_t last = 0;
    boost::system::error_code error;
    for (fs::directory_iterator file(folder, error), end; !error && file != end; file.increment(error))
        last = std::max<std::uint64_t>(last, std::strtoull(file->path().filename().c_str(), nullptr, 10));
    return last;
}

/// Whether a link is so old that its record won't follow any more.
bool isLeftBehind(const fs::path& link)
{
    constexpr std::time_t kSeconds = 60;
    struct stat status = {};
    return stat(link.c_str(), &status) == 0 && status.st_ctim.tv_sec + kSeconds < std::time(nullptr);
}

} // namespace

fs::path QueueEntry::record() const
{
    return withEnding(serial, account, kRecordEnding);
}

void QueueEntry::create()
{
    OwnFiles::makeFolder(Places::queue(account));
    serial = lastSerial(Places::queue(account));
    // Another run of the program may have queued something meanwhile.
    do
        link = withEnding(++serial, account, kLinkEnding);
    while (!linkContent(document, link));
    try {
        write();
    } catch (...) {
        boost::system::error_code error;
        fs::remove(link, error);
        throw;
    }
}

void QueueEntry::write() const
{
    QJsonObject json{{"otherNumber", qint64(other.number)},
                     {"otherAuthor", QString::fromStdString(other.author)},
                     {"otherTime", QString::fromStdString(other.createdAt)},
                     {"stamp", QString::fromStdString(stamp.text())},
                     {"document", QString::fromStdString(document.string())},
                     {"size", QString::number(size)}};
    for (const auto& [name, text] : kTexts)
        json[QLatin1String(name)] = QString::fromStdString(this->*text);
    for (const auto& [name, flag] : kFlags)
        json[QLatin1String(name)] = this->*flag;
    for (const auto& [name, number] : kNumbers)
        json[QLatin1String(name)] = qint64(this->*number);
    for (const auto& [name, each] : kStates)
        if (each == state)
            json["state"] = QLatin1String(name);
    OwnFiles::write(record(), QJsonDocument(json).toJson().toStdString());
}

void QueueEntry::remove() const
{
    boost::system::error_code error;
    fs::remove(record(), error);
    fs::remove(link, error);
}

std::optional<QueueEntry> QueueEntry::read(const Path& record)
try {
    const std::optional<QJsonObject> json = JsonFile::read(record);
    if (!json || (*json)["document"].toString().isEmpty())
        return std::nullopt;
    QueueEntry entry;
    entry.serial = std::strtoull(record.stem().c_str(), nullptr, 10);
    entry.account = record.parent_path().parent_path().filename().string();
    entry.link = withEnding(entry.serial, entry.account, kLinkEnding);
    entry.document = (*json)["document"].toString().toStdString();
    entry.stamp = FileStamp::ofText((*json)["stamp"].toString().toStdString());
    entry.size = (*json)["size"].toString().toULongLong();
    entry.other.number = (*json)["otherNumber"].toInteger();
    entry.other.author = (*json)["otherAuthor"].toString().toStdString();
    entry.other.createdAt = (*json)["otherTime"].toString().toStdString();
    for (const auto& [name, text] : kTexts)
        entry.*text = (*json)[QLatin1String(name)].toString().toStdString();
    for (const auto& [name, flag] : kFlags)
        entry.*flag = (*json)[QLatin1String(name)].toBool();
    for (const auto& [name, number] : kNumbers)
        entry.*number = (*json)[QLatin1String(name)].toInteger();
    for (const auto& [name, state] : kStates)
        if ((*json)["state"] == QLatin1String(name))
            entry.state = state;
    return entry;
} catch (const Exception&) {
    return std::nullopt;
}

std::vector<QueueEntry> QueueEntry::all(const std::string& account)
{
    std::vector<QueueEntry> entries;
    std::vector<Path> links;
    boost::system::error_code error;
    for (fs::directory_iterator file(Places::queue(account), error), end; !error && file != end;
         file.increment(error)) {
        if (file->path().extension() == kLinkEnding)
            links.push_back(file->path());
        else if (file->path().extension() == kRecordEnding)
            if (auto entry = read(file->path()))
                entries.push_back(std::move(*entry));
    }
    for (const Path& link : links)
        if (!fs::exists(Path(link).replace_extension(kRecordEnding), error) && isLeftBehind(link))
            fs::remove(link, error);
    std::sort(entries.begin(), entries.end(),
              [](const QueueEntry& one, const QueueEntry& other) { return one.serial < other.serial; });
    return entries;
}

std::wstring QueueEntry::reasonText() const
{
    if (state != State::Outdated)
        return Strings::widen(reason);
    const std::wstring name = document.filename().wstring();
    if (other.author.empty())
        return localizedFormat("ItemhubOutdated", "There is a newer version of %1% on the lifecycle service.",
                               name);
    const QDateTime at =
        QDateTime::fromString(QString::fromStdString(other.createdAt), Qt::ISODateWithMs).toLocalTime();
    return localizedFormat("ItemhubOutdatedBy",
                           "%1% made version %2% of %3% on %4%, while you worked on an older one.",
                           Strings::widen(other.author), other.number, name,
                           QLocale().toString(at, QLocale::ShortFormat).toStdWString());
}

UploadQueuedFileInfo QueueEntry::info() const
{
    UploadQueuedFileInfo::Values values;
    values.fileName = document.filename().wstring();
    values.uploadQueuedFile = link.wstring();
    values.document = document.wstring();
    values.label = Strings::widen(label);
    values.reason = reasonText();
    values.state = state;
    values.itemId = itemId;
    boost::system::error_code error;
    const std::uintmax_t bytes = fs::file_size(link, error);
    values.bytes = error ? 0 : bytes;
    return UploadQueuedFileInfo(std::move(values));
}

} // namespace Vs::Itemhub
