#include "Server/DataModel/Exchange/ImportCache.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/ScratchFolder.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"
#include "Server/DataModel/Exchange/Private/ScratchFile.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/DataModel/Model/PlainFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>
#include <xxhash.h>

namespace Vs::Exchange {

namespace fs = std::filesystem;

namespace {

// Part of every key. Raised whenever the same file would give a different model.
constexpr const char* kReader = "8-" QUILLET_KERNEL_VERSION;
constexpr const char* kSuffix = ".model";
constexpr const char* kOthersSuffix = ".others"; // one path a line, as seen from the file
constexpr const char* kScratchSuffix = ".part";
constexpr const char* kPieces = "/pieces";
constexpr auto kScratchAge = std::chrono::hours(24);

std::string hexOf(const XXH128_hash_t& hash)
{
    char text[33];
    std::snprintf(text, sizeof text, "%016llx%016llx", static_cast<unsigned long long>(hash.high64),
                  static_cast<unsigned long long>(hash.low64));
    return text;
}

/// The usual folder or, where it lacks the room, one in the temporary folder or in memory that has it.
std::string folderWith(uint64_t room, const std::string& usual)
{
    static std::mutex mutex;
    static std::map<std::string, ScratchFolder> others;
    std::error_code error;
    const auto hasRoom = [&](const std::string& folder) {
        const fs::space_info space = fs::space(folder, error);
        return !error && space.available >= room && access(folder.c_str(), W_OK | X_OK) == 0;
    };
    if (room == 0 || hasRoom(usual))
        return usual;
    const std::lock_guard lock(mutex);
    for (const std::string& other : {fs::temp_directory_path(error).string(), std::string("/dev/shm")})
        if (hasRoom(other))
            if (const std::string& own = others.try_emplace(other, other).first->second.path(); !own.empty())
                return own;
    return usual;
}

/// Why models can't be kept in a folder; empty if they can.
std::string faultOf(const std::string& folder)
{
    constexpr mode_t kOthersWrite = 022;
    struct stat info;
    if (stat(folder.c_str(), &info) != 0 || access(folder.c_str(), W_OK | X_OK) != 0)
        return std::string("cannot be written: ") + std::strerror(errno);
    // Whoever can write there could make this program read what none of its workers produced.
    if (info.st_uid != geteuid() || (info.st_mode & kOthersWrite) != 0)
        return "can be written by other users";
    return {};
}

/// Where imported models lie while they are open: the cache, or where that cannot be used (a home that is
/// read-only, say) a folder of this process's own, which is removed with it.
class ModelFolder
{
public:
    ModelFolder()
    {
        std::string cause;
        try {
            m_path = (PathInfo::cacheDirectory() / "import").string();
            OwnFiles::makeFolder(m_path);
            cause = faultOf(m_path);
            if (cause.empty())
                return;
            cause = "The folder " + m_path + ' ' + cause + '.';
        } catch (const Exception& error) {
            cause = Strings::narrow(error.message());
        }
        m_own.emplace();
        if (m_own->path().empty())
            return; // The import that cannot write reports it then.
        m_path = m_own->path();
        warn(Strings::widen(cause + " Imported models are kept in " + m_path + " until the end."));
    }

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
    std::optional<ScratchFolder> m_own;
};

} // namespace

ImportCache::ImportCache(std::string folder, uint64_t limit) : m_folder(std::move(folder)), m_limit(limit)
{
    try {
        OwnFiles::makeFolder(m_folder);
    } catch (const Exception&) {
        // The import that cannot write reports it.
    }
}

std::optional<std::string> ImportCache::keyOf(const std::string& path, const char* format)
{
    constexpr size_t kPiece = 1 << 16; // stays in the processor's cache
    try {
        PlainFile file(path);
        const std::unique_ptr<XXH3_state_t, XXH_errorcode (*)(XXH3_state_t*)> state(XXH3_createState(),
                                                                                    &XXH3_freeState);
        XXH3_128bits_reset(state.get());
        // No file name contains a zero byte, so name and content can't be confused with another pair.
        const std::string name = fs::path(path).stem().string();
        XXH3_128bits_update(state.get(), name.c_str(), name.size() + 1);
        const auto piece = std::make_unique_for_overwrite<char[]>(kPiece);
        while (const size_t got = file.read(piece.get(), kPiece))
            XXH3_128bits_update(state.get(), piece.get(), got);
        return hexOf(XXH3_128bits_digest(state.get())) + "-" + format + "-" + kReader;
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

void ImportCache::noteOthers(const std::string& key, const std::string& folder,
                             const std::vector<std::string>& others)
{
    const ScratchFile scratch(scratchPath());
    std::ofstream stream(scratch.path(), std::ios::binary);
    for (const std::string& other : others)
        stream << fs::path(other).lexically_proximate(folder).string() << '\n';
    stream.close();
    std::error_code ignored;
    if (stream)
        fs::rename(scratch.path(), m_folder + "/" + key + kOthersSuffix, ignored);
}

std::string ImportCache::fullKey(const std::string& key, const std::string& folder) const
{
    std::ifstream stream(m_folder + "/" + key + kOthersSuffix, std::ios::binary);
    if (!stream)
        return key;
    std::string keys = key;
    for (std::string other; std::getline(stream, other);)
        keys += '\n' + keyOf((fs::path(folder) / other).string(), "").value_or("missing");
    return hexOf(XXH3_128bits(keys.data(), keys.size())) + "-" + kReader;
}

std::string ImportCache::pathOf(const std::string& key) const
{
    return m_folder + "/" + key + kSuffix;
}

std::shared_ptr<const ModelFile> ImportCache::find(const std::string& key)
{
    const std::string path = pathOf(key);
    std::error_code ignored;
    if (!fs::exists(path, ignored))
        return nullptr;
    try {
        auto file = ModelFile::open(path);
        utimensat(AT_FDCWD, path.c_str(), nullptr, 0);
        return file;
    } catch (const std::runtime_error&) {
        fs::remove(path, ignored);
        return nullptr;
    }
}

std::string ImportCache::scratchPath(uint64_t room)
{
    static std::atomic<unsigned> number = 0;
    return folderWith(room, m_folder) + "/" + std::to_string(getpid()) + "-" + std::to_string(++number) +
           kScratchSuffix;
}

std::shared_ptr<const ModelFile> ImportCache::store(const std::string& key, const std::string& scratch)
{
    auto file = ModelFile::open(scratch);
    const std::string path = pathOf(key);
    std::error_code error;
    fs::rename(scratch, path, error);
    if (error)
        fs::remove(scratch, error); // The mapping stays good for as long as it is held.
    else
        trim(path);
    return file;
}

std::string ImportCache::pieces() const
{
    const std::string path = m_folder + kPieces;
    try {
        OwnFiles::makeFolder(path);
    } catch (const Exception&) {
        // Nothing is kept then.
    }
    return path;
}

void ImportCache::trim(const std::string& keep)
{
    struct Entry
    {
        fs::path path;
        fs::file_time_type used;
        uint64_t size;
    };
    std::vector<Entry> entries;
    uint64_t sum = 0;
    const auto now = fs::file_time_type::clock::now();
    const auto look = [&](const std::string& folder, const auto& isEntry) {
        std::error_code error;
        for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error)) {
            std::error_code gone;
            if (!each->is_regular_file(gone))
                continue;
            const Entry entry{each->path(), each->last_write_time(gone), each->file_size(gone)};
            if (gone)
                continue;
            if (entry.path.extension() == kScratchSuffix && now - entry.used > kScratchAge)
                fs::remove(entry.path, gone); // left behind by a program that died
            if (!isEntry(entry.path.extension()))
                continue;
            sum += entry.size;
            if (entry.path != keep)
                entries.push_back(entry);
        }
    };
    look(m_folder, [](const fs::path& suffix) { return suffix == kSuffix || suffix == kOthersSuffix; });
    look(m_folder + kPieces, [](const fs::path&) { return true; });
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.used < b.used; });
    for (const Entry& entry : entries) {
        if (sum <= m_limit)
            break;
        std::error_code error;
        fs::remove(entry.path, error);
        sum -= entry.size;
    }
}

ImportCache& importCache()
{
    static const ModelFolder folder;
    static ImportCache cache(folder.path());
    return cache;
}

} // namespace Vs::Exchange
