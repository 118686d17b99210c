#include "Server/Skyvault/Private/Cache.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/QtApplication.h"
#include "Server/Base/Require.h"
#include "Server/Base/SiblingLibrary.h"
#include "Server/Base/Warning.h"
#include "Server/Skyvault/Private/Texts.h"

#include <boost/filesystem/operations.hpp>

#include <stdexcept>
#include <sys/stat.h>

namespace Vs::Cloud {

namespace fs = boost::filesystem;

namespace {

std::string_view withoutWeakness(std::string_view etag)
{
    return etag.starts_with("W/") ? etag.substr(2) : etag;
}

/// The existing part with all links resolved.
fs::path real(const fs::path& path)
{
    boost::system::error_code error;
    fs::path found = fs::weakly_canonical(path, error);
    return error ? path.lexically_normal() : found;
}

void indexWasDamaged(const fs::path& root)
{
    warn(localizedFormat("CloudIndexDamaged",
                         "The index of the cloud drive's local copies was damaged and is being rebuilt. No "
                         "file was touched: those in %1% are compared with the drive when they are opened.",
                         root.wstring()));
}

} // namespace

bool isSameEtag(const std::string& a, const std::string& b)
{
    return !a.empty() && withoutWeakness(a) == withoutWeakness(b);
}

Cache& Cache::get()
{
    static auto* const cache = new Cache;
    return *cache;
}

std::optional<Cache::Place> Cache::placeOf(const Path& file)
{
    if (!PathInfo::isPathInCloudCache(file))
        return std::nullopt;
    const fs::path top = real(PathInfo::cloudCacheDirectory());
    const fs::path inside = real(PathInfo::absolute(file)).lexically_relative(top);
    if (inside.empty() || *inside.begin() == "..")
        return std::nullopt;
    auto part = inside.begin();
    Place place{PathInfo::cloudCacheDirectory() / *part, {}};
    for (++part; part != inside.end(); ++part)
        place.path += '/' + part->string();
    return place.path.empty() ? std::nullopt : std::optional(place);
}

CacheIndexLibrary& Cache::library()
{
    QtApplication::need();
    if (!m_library) {
        using Entry = CacheIndexLibrary* (*)();
        try {
            m_library = SiblingLibrary("libVsSkyvaultIndex10.so").function<Entry>("quilletCloudIndex")();
        } catch (const std::runtime_error& error) {
            throw Exception(std::string(error.what()));
        }
    }
    return *m_library;
}

CacheIndex& Cache::opened(const Path& root)
{
    std::unique_ptr<CacheIndex>& index = m_indices[root];
    boost::system::error_code error;
    if (index && !fs::exists(root.string() + ".index", error))
        index.reset();
    if (!index) {
        OwnFiles::makeFolder(root);
        bool wasDamaged = false;
        index = library().open(root.string() + ".index", wasDamaged);
        if (wasDamaged)
            indexWasDamaged(root);
    }
    return *index;
}

// An index that has failed is reopened: it may have been replaced, or be damaged, which reopening repairs.
template <class Action>
auto Cache::withIndex(const Path& root, Action&& action)
{
    assertMainThread();
    try {
        return action(opened(root));
    } catch (const Exception&) {
        m_indices[root].reset();
    }
    return action(opened(root));
}

std::optional<CacheRow> Cache::row(const Place& place)
{
    std::optional<CacheRow> row =
        withIndex(place.root, [&](CacheIndex& index) { return index.find(place.path); });
    if (!row || row->incomingEtag.empty())
        return row;
    // The program ended between the two steps of a download.
    boost::system::error_code error;
    if (fs::exists(place.file(), error) && library().hashOf(place.file().string()) == row->incomingHash) {
        row->etag = row->incomingEtag;
        row->hash = row->incomingHash;
        row->size = fs::file_size(place.file());
        row->localTime = timeOf(place.file());
        row->otherEtag.clear();
    }
    row->incomingEtag.clear();
    row->incomingHash.clear();
    put(place, *row);
    return row;
}

CacheRow Cache::rowOrNew(const Place& place)
{
    CacheRow fresh;
    fresh.path = place.path;
    return row(place).value_or(fresh);
}

void Cache::put(const Place& place, const CacheRow& row)
{
    withIndex(place.root, [&](CacheIndex& index) { index.put(row); });
}

void Cache::replace(const Place& gone, const Place& place, const CacheRow& row)
{
    withIndex(place.root, [&](CacheIndex& index) { index.replace(gone.path, row); });
}

std::vector<CacheRow> Cache::inFolder(const Path& root, const std::string& folder)
{
    return withIndex(root, [&](CacheIndex& index) { return index.inFolder(folder == "/" ? "" : folder); });
}

std::vector<std::string> Cache::foldersIn(const Path& root, const std::string& folder)
{
    return withIndex(root, [&](CacheIndex& index) { return index.foldersIn(folder == "/" ? "" : folder); });
}

std::vector<CacheRow> Cache::pending(const Path& root)
{
    return withIndex(root, [](CacheIndex& index) { return index.pending(); });
}

bool Cache::isChanged(const Place& place, const CacheRow& row)
{
    const fs::path file = place.file();
    const std::int64_t time = timeOf(file);
    if (time == 0 || row.hash.empty())
        return time != 0;
    boost::system::error_code error;
    if (fs::file_size(file, error) != row.size)
        return true;
    if (time == row.localTime)
        return false;
    if (library().hashOf(file.string()) != row.hash)
        return true;
    CacheRow seen = row;
    seen.localTime = time;
    put(place, seen);
    return false;
}

CloudFileState Cache::state(const Path& file)
try {
    const std::optional<Place> place = placeOf(file);
    if (!place)
        return CloudFileState::Unknown;
    if (m_uploading.contains(place->file().string()))
        return CloudFileState::Uploading;
    const std::optional<CacheRow> known = row(*place);
    if (!known)
        return CloudFileState::Unknown;
    if (known->pending != CacheRow::Pending::No)
        return CloudFileState::Waiting;
    if (known->isRemoved())
        return CloudFileState::Removed;
    if (!known->otherEtag.empty())
        return CloudFileState::Changed;
    return isChanged(*place, *known) ? CloudFileState::Dirty : CloudFileState::Clean;
} catch (const Exception&) {
    // Whoever saves or opens the file gets the error.
    return CloudFileState::Unknown;
}

std::int64_t Cache::timeOf(const Path& file)
{
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0)
        return 0;
    constexpr std::int64_t kSecond = 1'000'000'000;
    return status.st_mtim.tv_sec * kSecond + status.st_mtim.tv_nsec;
}

} // namespace Vs::Cloud
