#include "Server/Itemhub/Private/WorkFiles.h"

#include "Server/Base/Exception.h"
#include "Server/Base/JsonFile.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Itemhub/Private/Places.h"

#include <QJsonObject>

#include <boost/filesystem/operations.hpp>

#include <ctime>
#include <sstream>
#include <sys/stat.h>

namespace Vs::Itemhub {

namespace fs = boost::filesystem;

namespace {

constexpr const char* kRecord = ".item.json";
constexpr const char* kFiles = "files";

fs::path recordOf(const fs::path& file)
{
    return file.parent_path() / kRecord;
}

/// NAME of "accounts/NAME/files/NUMBER/FILE" below the root; empty for any other path.
std::string accountOf(const fs::path& file)
{
    const fs::path inside = file.lexically_normal().lexically_relative(Places::root());
    std::vector<std::string> names;
    for (const fs::path& part : inside)
        names.push_back(part.string());
    constexpr size_t kDepth = 5;
    return names.size() == kDepth && names[0] == "accounts" && names[2] == kFiles ? names[1] : std::string();
}

QJsonObject toJson(const WorkFile& work)
{
    return {{"file", QString::fromStdString(work.file.filename().string())},
            {"workspace", qint64(work.workspaceId)},
            {"item", qint64(work.itemId)},
            {"attachment", qint64(work.attachmentId)},
            {"version", qint64(work.version)},
            {"sha256", QString::fromStdString(work.sha256)},
            {"docType", QString::fromStdString(work.docType)},
            {"stamp", QString::fromStdString(work.stamp.text())}};
}

std::optional<WorkFile> read(const fs::path& file, const std::string& account)
try {
    const std::optional<QJsonObject> json = JsonFile::read(recordOf(file));
    if (!json || (*json)["file"].toString().toStdString() != file.filename().string())
        return std::nullopt;
    WorkFile work;
    work.file = file;
    work.account = account;
    work.workspaceId = (*json)["workspace"].toInteger();
    work.itemId = (*json)["item"].toInteger();
    work.attachmentId = (*json)["attachment"].toInteger();
    work.version = (*json)["version"].toInteger();
    work.sha256 = (*json)["sha256"].toString().toStdString();
    work.docType = (*json)["docType"].toString().toStdString();
    work.stamp = FileStamp::ofText((*json)["stamp"].toString().toStdString());
    return work;
} catch (const Exception&) {
    // Records are replaced atomically; an unreadable one was damaged by others.
    return std::nullopt;
}

void write(const WorkFile& work)
{
    JsonFile::write(recordOf(work.file), toJson(work), JsonFile::Readers::OwnerOnly);
}

/// Whether a folder contains only its record and the file of that name, or only the record.
bool hasNothingElse(const fs::path& folder, const fs::path& file)
{
    boost::system::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (entry->path() != file && entry->path().filename() != kRecord)
            return false;
    return !error;
}

/// If interrupted, this leaves a folder without its file, the same state as before a download.
void removeFolderOf(const fs::path& file)
{
    boost::system::error_code error;
    fs::remove(file, error);
    if (!error)
        fs::remove(recordOf(file), error);
    if (!error)
        fs::remove(file.parent_path(), error);
}

} // namespace

FileStamp FileStamp::of(const fs::path& file)
{
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0)
        return {};
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    return {status.st_ino, static_cast<std::uint64_t>(status.st_size),
            status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec};
}

std::string FileStamp::text() const
{
    return std::to_string(inode) + ' ' + std::to_string(size) + ' ' + std::to_string(changed);
}

FileStamp FileStamp::ofText(const std::string& text)
{
    std::istringstream numbers(text);
    FileStamp stamp;
    return numbers >> stamp.inode >> stamp.size >> stamp.changed ? stamp : FileStamp();
}

bool WorkFile::isChanged() const
{
    const FileStamp now = FileStamp::of(file);
    return now.exists() && now != stamp;
}

WorkFiles& WorkFiles::get()
{
    static auto* const files = new WorkFiles;
    return *files;
}

std::optional<WorkFile> WorkFiles::find(const Path& file) const
{
    const std::string account = accountOf(file);
    if (account.empty())
        return std::nullopt;
    const std::lock_guard lock(m_mutex);
    return read(file.lexically_normal(), account);
}

std::vector<WorkFile> WorkFiles::all(const std::string& account) const
{
    const std::lock_guard lock(m_mutex);
    std::vector<WorkFile> found;
    boost::system::error_code error;
    for (fs::directory_iterator folder(Places::account(account) / kFiles, error), end;
         !error && folder != end; folder.increment(error)) {
        std::optional<QJsonObject> json;
        try {
            json = JsonFile::read(folder->path() / kRecord);
        } catch (const Exception&) {
            continue;
        }
        if (!json)
            continue;
        if (auto work = read(folder->path() / (*json)["file"].toString().toStdString(), account))
            found.push_back(std::move(*work));
    }
    return found;
}

WorkFile WorkFiles::make(WorkFile values, const std::string& name)
{
    const std::lock_guard lock(m_mutex);
    const Path files = Places::account(values.account) / kFiles;
    OwnFiles::makeFolder(files);
    // The first free number above those of all items on this machine.
    for (unsigned number = 1;; ++number) {
        const Path folder = files / std::to_string(number);
        boost::system::error_code error;
        if (fs::exists(folder, error))
            continue;
        OwnFiles::makeFolder(folder);
        values.file = folder / name;
        write(values);
        return values;
    }
}

void WorkFiles::change(const Path& file, const std::function<void(WorkFile&)>& action)
{
    const std::string account = accountOf(file);
    if (account.empty())
        return;
    const std::lock_guard lock(m_mutex);
    std::optional<WorkFile> work = read(file.lexically_normal(), account);
    if (!work)
        return;
    action(*work);
    write(*work);
}

bool WorkFiles::touch(const Path& file)
{
    if (accountOf(file).empty())
        return false;
    const std::lock_guard lock(m_mutex);
    boost::system::error_code error;
    fs::last_write_time(recordOf(file), std::time(nullptr), error);
    return !error;
}

void WorkFiles::removeUnused(const std::string& account, std::int64_t seconds,
                             const std::function<bool(const WorkFile&)>& isNeeded)
{
    for (const WorkFile& work : all(account)) {
        const std::lock_guard lock(m_mutex);
        boost::system::error_code error;
        const std::time_t used = fs::last_write_time(recordOf(work.file), error);
        if (!error && used + seconds < std::time(nullptr) && !work.isChanged() && !isNeeded(work) &&
            hasNothingElse(work.file.parent_path(), work.file))
            removeFolderOf(work.file);
    }
}

} // namespace Vs::Itemhub
