#include "Server/DataModel/Recovery/Private/RecoveryStore.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Recovery/Private/FolderCalls.h"
#include "Server/Types/Uuid.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <thread>

namespace Vs::Recovery {

namespace fs = std::filesystem;
using Answer = RecoveryCheck::Answer;

namespace {

constexpr const char* kDiscarded = "discarded";
constexpr const char* kDamaged = "damaged";
constexpr std::time_t kDiscardedFor = std::time_t(24) * 60 * 60; // seconds
constexpr uintmax_t kMostDiscarded = uintmax_t(1) << 30;
constexpr auto kPruning = std::chrono::hours(1);
constexpr auto kChildTakes = std::chrono::seconds(30); // to finish, once its parent has died

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

// Where it was no longer matters; when it came here is in the folder's name.
std::string putAside(const std::string& file, const char* where)
{
    const fs::path folder =
        fs::path(PathInfo::recoveryDirectory().string()) / where /
        (std::to_string(std::time(nullptr)) + '-' + Strings::narrow(fromUuid(makeUuid())).substr(0, 8));
    OwnFiles::makeFolder(folder.string());
    // What is moved into a folder must not be lost with its name.
    for (const fs::path& above : {folder.parent_path(), folder.parent_path().parent_path()})
        FolderCalls::flush(above.string(), Native::FileCalls::current());
    std::string target = (folder / fs::path(file).filename()).string();
    FolderCalls::rename(file, target);
    FolderCalls::flush(folder.string(), Native::FileCalls::current());
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
    // One that went, with its disk or by somebody's hand, is nobody's: another run could take what came
    // there.
    if (!m_own || !m_own->isThere()) {
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

void RecoveryStore::list()
{
    m_listed = true;
    m_lastListed = Clock::now();
    m_toClaim.clear();
    for (const std::string& path : foldersIn(PathInfo::recoveryDirectory().string())) {
        const std::string name = fs::path(path).filename().string();
        if (name == kDiscarded || name == kDamaged || (m_own && m_own->path() == path))
            continue;
        m_toClaim.push_back(path);
    }
}

std::string RecoveryStore::olderIn(const std::string& folder)
{
    return fileIn(folder + '/' + kOlder);
}

// What nobody has any more is this run's from now on, as long as it lives.
void RecoveryStore::claimNext()
{
    const std::string path = m_toClaim.front();
    m_toClaim.pop_front();
    if (m_taken.contains(path))
        return;
    SessionFolder::Claim claim = SessionFolder::claim(path);
    // Its child finishes what it writes.
    if (claim.unfinished && m_awaits && Clock::now() - m_lastListed < kChildTakes)
        m_toClaim.push_back(path);
    if (!claim.folder)
        return;
    m_left.reset();
    if (claim.folder->removeIfEmpty())
        return;
    m_taken.emplace(path, std::move(claim.folder));
    haveAllChecked(path);
}

void RecoveryStore::haveAllChecked(const std::string& session)
{
    for (const std::string& folder : foldersIn(session)) {
        const Generations& files = m_generations[folder] = {fileIn(folder), olderIn(folder)};
        haveChecked(files.last.empty() ? files.older : files.last);
    }
}

void RecoveryStore::haveChecked(const std::string& file)
{
    if (file.empty() || known(file) || m_checking.contains(file))
        return;
    m_checking[file] = FileIdentity::of(file);
    m_checker.add({file});
}

void RecoveryStore::take(const std::string& file, RecoveryCheck check)
{
    const Answer answer = check.answer;
    m_known[file] = {m_checking[file], std::move(check)};
    m_checking.erase(file);
    const std::string older = olderIn(folderOf(file));
    if (answer != Answer::Sound && older != file)
        haveChecked(older);
}

bool RecoveryStore::look()
{
    constexpr auto kSlice = std::chrono::milliseconds(2);
    const auto end = Clock::now() + kSlice;
    if (!m_listed)
        list();
    // One that has to be waited for is looked at once in a turn.
    for (size_t left = m_toClaim.size(); left > 0 && Clock::now() < end; --left)
        claimNext();
    m_checker.work([this](const std::string& file, RecoveryCheck check) { take(file, std::move(check)); });
    return !hasLooked();
}

const std::vector<AutoSavedFileInfo>& RecoveryStore::left(const Tell& tellDamaged)
{
    // Runs may have ended since. What their children still write is there when somebody asks again: only
    // the first one who asks waits for it.
    if (hasLooked()) {
        m_awaits = false;
        list();
    }
    lookToTheEnd();
    if (m_left && !isUnchanged(*m_left)) {
        m_left.reset();
        for (const auto& [path, session] : m_taken)
            haveAllChecked(path);
        lookToTheEnd();
    }
    if (!m_left)
        m_left = collectAll(tellDamaged);
    return *m_left;
}

void RecoveryStore::lookToTheEnd()
{
    while (look())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

bool RecoveryStore::isUnchanged(const std::vector<AutoSavedFileInfo>& files) const
{
    return std::all_of(files.begin(), files.end(), [this](const AutoSavedFileInfo& file) {
        return known(Strings::toBytes(file.autoSavedFile())) != nullptr;
    });
}

std::vector<AutoSavedFileInfo> RecoveryStore::collectAll(const Tell& tellDamaged)
{
    std::vector<AutoSavedFileInfo> files;
    for (const std::string& file : m_offered) {
        const std::string folder = folderOf(file);
        const Generations& own = m_generations[folder] = {file, olderIn(folder)};
        if (checkedHere(file).answer != Answer::Sound && !own.older.empty())
            checkedHere(own.older);
    }
    for (const auto& [folder, generations] : m_generations)
        collect(generations, files, tellDamaged);
    std::stable_sort(files.begin(), files.end(), [](const auto& first, const auto& second) {
        return first.fileSavedTime() > second.fileSavedTime();
    });
    return files;
}

const RecoveryCheck* RecoveryStore::known(const std::string& file) const
{
    const auto found = m_known.find(file);
    return found != m_known.end() && found->second.identity == FileIdentity::of(file) ? &found->second.check
                                                                                      : nullptr;
}

// A file of this run's own was opened by it, and read back when it was written.
const RecoveryCheck& RecoveryStore::checkedHere(const std::string& file)
{
    if (!known(file))
        m_known[file] = {FileIdentity::of(file), RecoveryCheck::of(file)};
    return m_known[file].check;
}

void RecoveryStore::collect(const Generations& generations, std::vector<AutoSavedFileInfo>& files,
                            const Tell& tellDamaged)
{
    std::vector<std::string> damaged;
    std::optional<AutoSavedFileInfo> doubtful;
    bool isStrange = false;
    for (const bool older : {false, true}) {
        const std::string& file = older ? generations.older : generations.last;
        const RecoveryCheck* check = file.empty() ? nullptr : known(file);
        if (!check)
            continue;
        if (check->answer == Answer::Sound) {
            files.push_back(infoOf(file, check->record, older));
            return;
        }
        if (check->answer == Answer::Doubtful && !doubtful)
            doubtful = infoOf(file, check->record, older);
        if (check->answer == Answer::Damaged)
            damaged.push_back(file);
        isStrange = isStrange || check->answer == Answer::Strange;
    }
    if (doubtful)
        files.push_back(*doubtful);
    // What isn't understood may be worth something to another version, or on another day.
    if (doubtful || isStrange)
        return;
    for (const std::string& file : damaged) {
        try {
            const std::string target = putAside(file, kDamaged);
            if (file == damaged.front())
                tellDamaged(target);
        } catch (const std::exception&) {
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

std::vector<StepJournal::Step> RecoveryStore::stepsBehind(const std::string& file)
{
    const unsigned first = known(file) ? record(file).steps : 0;
    const std::string folder = folderOf(file);
    return first == 0 || file != fileIn(folder) ? std::vector<StepJournal::Step>()
                                                : StepJournal::read(folder, first);
}

void RecoveryStore::remove(const std::string& file)
{
    const std::string folder = folderOf(file);
    // The last one goes last: of half a folder, the newest is left.
    if (const std::string older = olderIn(folder); older != file && !older.empty())
        FolderCalls::remove(older);
    FolderCalls::removeAll(folder);
    if (m_left)
        std::erase_if(*m_left, [&](const AutoSavedFileInfo& each) {
            return folderOf(Strings::toBytes(each.autoSavedFile())) == folder;
        });
    m_generations.erase(folder);
    m_known.erase(file);
    m_offered.erase(file);
    const auto session = m_taken.find(fs::path(folder).parent_path().string());
    if (session != m_taken.end() && session->second->removeIfEmpty())
        m_taken.erase(session);
}

bool RecoveryStore::discard(const std::string& file)
{
    if (m_keepsDiscarded) {
        if (const std::string older = olderIn(folderOf(file)); older != file && !older.empty())
            FolderCalls::remove(older);
        const uintmax_t size = sizeOf(folderOf(file));
        try {
            putAside(file, kDiscarded);
        } catch (const std::exception&) {
            return false;
        }
        m_discarded += size;
        // Not each time: it looks at all of them, and a user may throw away a thousand.
        if (!m_pruned || m_discarded > kMostDiscarded || Clock::now() - *m_pruned > kPruning)
            prune();
    }
    remove(file);
    return true;
}

void RecoveryStore::prune()
{
    std::error_code ignored;
    const std::string root = PathInfo::recoveryDirectory().string() + '/' + kDiscarded;
    std::vector<std::string> folders = foldersIn(root);
    uintmax_t size = 0;
    const std::time_t now = std::time(nullptr);
    m_pruned = Clock::now();
    m_discarded = 0;
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
        const long long since = std::strtoll(fs::path(*folder).filename().c_str(), nullptr, 10);
        const uintmax_t own = sizeOf(*folder);
        size += own;
        // Setting the clock back makes none of them older than it is.
        if (now - since > kDiscardedFor || size > kMostDiscarded)
            FolderCalls::removeAll(*folder);
        else
            m_discarded += own;
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
    m_left.reset();
    m_generations.clear();
    m_checking.clear();
    m_checker = {};
    m_toClaim.clear();
    m_listed = false;
    m_awaits = true;
}

} // namespace Vs::Recovery
