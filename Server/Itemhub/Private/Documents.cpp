#include "Server/Itemhub/Private/Documents.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Itemhub/Private/Places.h"
#include "Server/Itemhub/Private/QueueEntry.h"
#include "Server/Itemhub/Private/SignIn.h"
#include "Server/Itemhub/Private/Transport.h"

#include <QString>

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <sys/stat.h>
#include <unistd.h>

namespace Vs::Itemhub {

namespace fs = boost::filesystem;

namespace {

/// In bytes of a name, so that our own suffixes fit behind it.
constexpr qsizetype kLongestName = 200;

/// Whether the queue has a matching entry of the file.
bool isQueued(const WorkFile& work, bool (*isMeant)(const QueueEntry&))
{
    const std::vector<QueueEntry> entries = QueueEntry::all(work.account);
    return std::any_of(entries.begin(), entries.end(), [&](const QueueEntry& entry) {
        return entry.document == work.file && isMeant(entry);
    });
}

bool isOutdated(const QueueEntry& entry)
{
    return entry.state == QueueEntry::State::Outdated;
}

/// Whether it still has to be sent, not having been overtaken by a newer version.
bool isUnsent(const QueueEntry& entry)
{
    return !isOutdated(entry);
}

bool isAny(const QueueEntry&)
{
    return true;
}

/// The content in the cache; fetched unless the cache has it intact.
fs::path fetched(ItemStore& store, const std::string& account, const Content& content, const Watch& watch)
{
    OwnFiles::makeFolder(Places::contents(account));
    fs::path file = Places::contents(account) / content.sha256;
    boost::system::error_code error;
    // The working files share it through hard links, so somebody may have written to it.
    if (fs::file_size(file, error) == content.size && !error &&
        ItemTransport::get().sha256(file.string(), watch) == content.sha256)
        return file;
    fs::remove(file, error);
    store.download(content, file.string(), watch);
    return file;
}

/// Puts the content in place of a working file, atomically.
void place(const fs::path& content, const fs::path& file)
{
    const fs::path beside = file.parent_path() / ".new";
    boost::system::error_code error;
    fs::remove(beside, error);
    // A file system without hard links.
    if (::link(content.c_str(), beside.c_str()) != 0)
        fs::copy_file(content, beside, error);
    if (error || std::rename(beside.c_str(), file.c_str()) != 0)
        throw Exception(file.string() + " cannot be written: " +
                        (error ? error.message() : std::string(std::strerror(errno))));
}

void note(const WorkFile& work, const Content& content)
{
    WorkFiles::get().change(work.file, [&](WorkFile& record) {
        record.version = content.version;
        record.sha256 = content.sha256;
        record.stamp = FileStamp::of(work.file);
    });
}

/// The local file to continue with; nothing if the newest version needs a new one.
std::optional<WorkFile> usable(const std::string& account, const Content& content,
                               const std::function<bool(const fs::path&)>& isOpen)
{
    std::optional<WorkFile> older;
    for (const WorkFile& work : WorkFiles::get().all(account)) {
        if (work.attachmentId != content.attachmentId || isQueued(work, isOutdated))
            continue;
        const bool isHere = FileStamp::of(work.file).exists();
        if (isHere && (isQueued(work, isUnsent) || work.isChanged() || work.version == content.version))
            return work;
        if (!isHere || !isOpen(work.file))
            older = work;
    }
    return older;
}

} // namespace

std::string Documents::fileName(const std::string& typed, const std::string& extension)
{
    QString name = QString::fromStdString(typed).simplified();
    for (QChar& c : name)
        if (c == '/' || c == '\\' || !c.isPrint())
            c = '_';
    while (name.toUtf8().size() > kLongestName)
        name.chop(1);
    if (name.startsWith('.'))
        name[0] = '_';
    if (name.isEmpty())
        name = QStringLiteral("_");
    return name.toStdString() + extension;
}

void Documents::trim(const std::string& account)
{
    constexpr std::time_t kMonth = 30L * 24 * 3600;
    WorkFiles::get().removeUnused(account, kMonth,
                                  [](const WorkFile& work) { return isQueued(work, isAny); });
    boost::system::error_code error, ignored;
    for (fs::directory_iterator file(Places::contents(account), error), end; !error && file != end;
         file.increment(error)) {
        struct stat status = {};
        if (stat(file->path().c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
            status.st_mtim.tv_sec + kMonth < std::time(nullptr))
            fs::remove(file->path(), ignored);
    }
}

Documents::Path Documents::addNewItem(ItemStore& store, const std::string& account, NewItem wanted,
                                      const std::string& key, const std::string& extension,
                                      const std::string& docType, const Watch& watch)
{
    if (wanted.workspaceId == 0) {
        const std::vector<Web::Workspace> all = store.workspaces(watch);
        const auto first =
            std::find_if(all.begin(), all.end(), [](const Web::Workspace& each) { return each.mayWrite(); });
        if (first == all.end())
            throw Web::ItemhubException(Web::ItemhubException::Kind::Forbidden,
                                        "This account may not create items in any workspace");
        wanted.workspaceId = first->id();
    }
    const Web::Item made = store.addItem(wanted, key, watch);
    WorkFile work;
    work.account = account;
    work.workspaceId = made.workspaceId();
    work.itemId = made.id();
    work.docType = docType;
    return WorkFiles::get().make(work, fileName(wanted.caption, extension)).file;
}

Documents::Path Documents::download(ItemStore& store, const std::string& account, const std::string& uri,
                                    const std::function<bool(const Path&)>& isOpen, const Watch& watch)
{
    const Content content = store.content(uri, watch);
    if (content.version == 0)
        return {};
    std::optional<WorkFile> work = usable(account, content, isOpen);
    // Unused files are removed after a while, perhaps just now.
    if (work && !WorkFiles::get().touch(work->file))
        work.reset();
    if (work && FileStamp::of(work->file).exists() &&
        (work->version == content.version || isQueued(*work, isUnsent) || work->isChanged()))
        return work->file;
    const Path cached = fetched(store, account, content, watch);
    if (!work) {
        WorkFile values;
        values.account = account;
        values.workspaceId = content.workspaceId;
        values.itemId = content.itemId;
        values.attachmentId = content.attachmentId;
        values.docType = content.docType;
        work = WorkFiles::get().make(values, content.file);
    }
    place(cached, work->file);
    note(*work, content);
    return work->file;
}

std::string Documents::attach(ItemStore& store, std::int64_t item, const Path& file, const std::string& name,
                              const std::string& docType, const Watch& watch)
{
    const std::string hash = ItemTransport::get().sha256(file.string(), watch);
    const std::string upload = store.beginUpload(fs::file_size(file), hash, watch);
    store.upload(upload, file.string(), 0, watch);
    const MadeVersion made = store.addVersion({.itemId = item,
                                               .attachmentId = 0,
                                               .name = name,
                                               .docType = docType,
                                               .upload = upload,
                                               .label = {},
                                               .madeFrom = 0,
                                               .key = SignIn::newKey()},
                                              watch);
    for (const Web::Attachment& attachment : store.attachments(item, watch))
        if (attachment.id() == made.attachmentId)
            return attachment.uri();
    return {};
}

std::string Documents::attachSnapshot(ItemStore& store, const WorkFile& work, const Path& snapshot,
                                      const Watch& watch)
{
    const std::string name =
        fileName(work.file.stem().string() + " (recovery)", work.file.extension().string());
    return attach(store, work.itemId, snapshot, name, work.docType, watch);
}

} // namespace Vs::Itemhub
