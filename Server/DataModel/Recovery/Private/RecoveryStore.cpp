#include "Server/DataModel/Recovery/Private/RecoveryStore.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Native/FileCalls.h"
#include "Server/Types/Uuid.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <stdexcept>

namespace Vs::Recovery {

namespace fs = std::filesystem;
using Answer = RecoveryCheck::Answer;

namespace {

constexpr const char* kDiscarded = "discarded";
constexpr const char* kDamaged = "damaged";
constexpr std::time_t kDiscardedFor = 24 * 60 * 60; // seconds
constexpr uintmax_t kMostDiscarded = uintmax_t(1) << 30;

std::vector<std::string> foldersIn(const std::string& folder)
{
    std::vector<std::string> found;
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        if (entry->symlink_status(error).type() == fs::file_type::directory)
            found.push_back(entry->path().string());
    std::sort(found.begin(), found.end());
    return found;
}

uintmax_t sizeOf(const std::string& folder)
{
    uintmax_t size = 0;
    std::error_code error;
    for (auto entry = fs::recursive_directory_iterator(folder, error);
         !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        const uintmax_t own = entry->is_regular_file(error) ? entry->file_size(error) : 0;
        size += error ? 0 : own;
    }
    return size;
}

// Where it was doesn't matter any more; when it came here stands in the folder's name.
std::string putAside(const std::string& file, const char* where)
{
    const fs::path folder =
        fs::path(PathInfo::recoveryDirectory().string()) / where /
        (std::to_string(std::time(nullptr)) + '-' + Strings::narrow(fromUuid(makeUuid())).substr(0, 8));
    OwnFiles::makeFolder(folder.string());
    const std::string target = (folder / fs::path(file).filename()).string();
    if (Native::FileCalls::current().rename(file.c_str(), target.c_str()) != 0)
        throw std::runtime_error("it can't be moved to " + folder.string());
    return target;
}

AutoSavedFileInfo infoOf(const std::string& file, const RecoveryRecord& record, bool older)
{
    AutoSavedFileInfo::Values values;
    values.fileName = record.fileName;
    values.autoSavedFile = Strings::fromBytes(file);
    values.oriSourceFile = record.source;
    values.fileSavedTime = record.savedTime;
    values.docIdentifier = record.documentType;
    values.attachmentUrl = record.attachmentUrl;
    values.isCloudFile = !record.attachmentUrl.empty();
    values.isOlder = older;
    return AutoSavedFileInfo(std::move(values));
}

} // namespace

std::string RecoveryStore::folderOf(const std::string& file)
{
    const fs::path folder = fs::path(file).parent_path();
    return (folder.filename() == kOlder ? folder.parent_path() : folder).string();
}

const SessionFolder& RecoveryStore::own()
{
    if (!m_own) {
        m_own = SessionFolder::create(PathInfo::recoveryDirectory().string());
        prune();
    }
    return *m_own;
}

std::string RecoveryStore::fileIn(const std::string& folder)
{
    std::vector<std::string> found;
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        if (entry->path().extension() == kSuffix &&
            entry->symlink_status(error).type() == fs::file_type::regular)
            found.push_back(entry->path().string());
    return found.empty() ? std::string() : *std::min_element(found.begin(), found.end());
}

// What nobody has any more is this run's from now on, as long as it lives.
void RecoveryStore::takeOver()
{
    for (const std::string& path : foldersIn(PathInfo::recoveryDirectory().string())) {
        const std::string name = fs::path(path).filename().string();
        if (name == kDiscarded || name == kDamaged || m_taken.contains(path) ||
            (m_own && m_own->path() == path))
            continue;
        if (auto folder = SessionFolder::claim(path))
            m_taken.emplace(path, std::move(folder));
    }
}

std::vector<AutoSavedFileInfo> RecoveryStore::left(const std::function<void(const std::string&)>& tellDamaged)
{
    std::vector<AutoSavedFileInfo> files;
    takeOver();
    for (const auto& [path, session] : m_taken)
        for (const std::string& folder : foldersIn(path))
            look(folder, files, tellDamaged);
    for (const std::string& file : m_offered)
        look(folderOf(file), files, tellDamaged);
    std::erase_if(m_taken, [](const auto& session) { return session.second->removeIfEmpty(); });
    std::stable_sort(files.begin(), files.end(), [](const auto& first, const auto& second) {
        return first.fileSavedTime() > second.fileSavedTime();
    });
    return files;
}

const RecoveryCheck& RecoveryStore::checked(const std::string& file)
{
    const FileIdentity identity = FileIdentity::of(file);
    const auto known = m_known.find(file);
    if (known != m_known.end() && known->second.identity == identity)
        return known->second.check;
    return (m_known[file] = {identity, RecoveryCheck::of(file)}).check;
}

void RecoveryStore::look(const std::string& folder, std::vector<AutoSavedFileInfo>& files,
                         const std::function<void(const std::string&)>& tellDamaged)
{
    std::vector<std::string> damaged;
    for (const bool older : {false, true}) {
        const std::string file = fileIn(older ? folder + '/' + kOlder : folder);
        if (file.empty())
            continue;
        const RecoveryCheck& check = checked(file);
        if (check.answer == Answer::Sound) {
            files.push_back(infoOf(file, check.record, older));
            return;
        }
        if (check.answer == Answer::Strange)
            return;
        damaged.push_back(file);
    }
    for (const std::string& file : damaged) {
        try {
            const std::string target = putAside(file, kDamaged);
            if (file == damaged.front())
                tellDamaged(target);
        } catch (const std::runtime_error&) {
            // It stays where it is, and is told of again.
        }
    }
}

bool RecoveryStore::isOffered(const std::string& file) const
{
    const std::string session = fs::path(folderOf(file)).parent_path().string();
    std::error_code error;
    return (m_taken.contains(session) || m_offered.contains(file)) && fs::path(file).extension() == kSuffix &&
           fs::symlink_status(file, error).type() == fs::file_type::regular;
}

void RecoveryStore::remove(const std::string& file)
{
    const std::string folder = folderOf(file);
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    m_known.erase(file);
    m_offered.erase(file);
    const auto session = m_taken.find(fs::path(folder).parent_path().string());
    if (session != m_taken.end() && session->second->removeIfEmpty())
        m_taken.erase(session);
}

void RecoveryStore::discard(const std::string& file)
{
    if (m_keepsDiscarded) {
        try {
            putAside(file, kDiscarded);
        } catch (const std::runtime_error&) {
            // Nobody wants it: there being no room for it is no reason to keep it where it is offered.
        }
        prune();
    }
    remove(file);
}

void RecoveryStore::prune()
{
    std::error_code ignored;
    const std::string root = PathInfo::recoveryDirectory().string() + '/' + kDiscarded;
    std::vector<std::string> folders = foldersIn(root);
    uintmax_t size = 0;
    const std::time_t now = std::time(nullptr);
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
        const long long since = std::strtoll(fs::path(*folder).filename().c_str(), nullptr, 10);
        size += sizeOf(*folder);
        // A clock that was put back makes none of them older than it is.
        if (now - since > kDiscardedFor || size > kMostDiscarded)
            fs::remove_all(*folder, ignored);
    }
    fs::remove(root, ignored); // Only if it is empty.
}

void RecoveryStore::end()
{
    if (m_own)
        m_own->removeIfEmpty();
    m_own.reset();
    m_taken.clear();
    m_offered.clear();
    m_known.clear();
}

} // namespace Vs::Recovery
