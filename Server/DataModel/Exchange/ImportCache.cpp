#include "Server/DataModel/Exchange/ImportCache.h"

#include "Server/DataModel/Model/ModelFile.h"

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>
#include <xxhash.h>

namespace Vs::Exchange {

namespace fs = std::filesystem;

namespace {

// Part of every key. Goes up whenever the same file would give another model.
constexpr const char* kReader = "4-" QUILLET_KERNEL_VERSION;
constexpr const char* kSuffix = ".model";
constexpr const char* kOthersSuffix = ".others"; // one path a line, as seen from the file
constexpr const char* kScratchSuffix = ".part";
constexpr auto kScratchAge = std::chrono::hours(24);

std::string hexOf(const XXH128_hash_t& hash)
{
    char text[33];
    std::snprintf(text, sizeof text, "%016llx%016llx", static_cast<unsigned long long>(hash.high64),
                  static_cast<unsigned long long>(hash.low64));
    return text;
}

} // namespace

ImportCache::ImportCache(std::string folder, uint64_t limit) : m_folder(std::move(folder)), m_limit(limit)
{
    std::error_code ignored;
    fs::create_directories(m_folder, ignored);
}

std::optional<std::string> ImportCache::keyOf(const std::string& path, const char* format)
{
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    struct stat info;
    void* data = MAP_FAILED;
    size_t size = 0;
    if (fstat(descriptor, &info) == 0 && info.st_size > 0) {
        size = static_cast<size_t>(info.st_size);
        data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, descriptor, 0);
    }
    close(descriptor);
    if (data == MAP_FAILED)
        return std::nullopt;
    const XXH128_hash_t hash = XXH3_128bits(data, size);
    munmap(data, size);
    return hexOf(hash) + "-" + format + "-" + kReader;
}

void ImportCache::noteOthers(const std::string& key, const std::string& folder,
                             const std::vector<std::string>& others)
{
    const std::string scratch = scratchPath();
    std::ofstream stream(scratch, std::ios::binary);
    for (const std::string& other : others)
        stream << fs::path(other).lexically_proximate(folder).string() << '\n';
    stream.close();
    std::error_code error;
    if (stream)
        fs::rename(scratch, m_folder + "/" + key + kOthersSuffix, error);
    if (!stream || error)
        fs::remove(scratch, error);
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

std::string ImportCache::scratchPath()
{
    static std::atomic<unsigned> number = 0;
    return m_folder + "/" + std::to_string(getpid()) + "-" + std::to_string(++number) + kScratchSuffix;
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
    std::error_code error;
    const auto now = fs::file_time_type::clock::now();
    for (fs::directory_iterator each(m_folder, error), end; each != end && !error; each.increment(error)) {
        std::error_code gone;
        const Entry entry{each->path(), each->last_write_time(gone), each->file_size(gone)};
        if (gone)
            continue;
        if (entry.path.extension() == kScratchSuffix && now - entry.used > kScratchAge)
            fs::remove(entry.path, gone); // left behind by a program that died
        if (entry.path.extension() != kSuffix && entry.path.extension() != kOthersSuffix)
            continue;
        sum += entry.size;
        if (entry.path != keep)
            entries.push_back(entry);
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.used < b.used; });
    for (const Entry& entry : entries) {
        if (sum <= m_limit)
            break;
        fs::remove(entry.path, error);
        sum -= entry.size;
    }
}

} // namespace Vs::Exchange
