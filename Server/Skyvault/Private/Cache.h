#pragma once

#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/Private/CacheIndex.h"

#include <boost/filesystem/path.hpp>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace Vs::Cloud {

/// The files of the cache with what the index knows about them. Functions that query the index throw
/// Vs::Exception if it is not available. Main thread only.
class Cache
{
public:
    using Path = boost::filesystem::path;

    static Cache& get();

    /// Where a file of the cache belongs: the folder of a user's drive, and the path on the drive. Nothing
    /// for files elsewhere.
    struct Place
    {
        Path root;
        std::string path;
        Path file() const { return root.string() + path; }
    };
    [[nodiscard]] static std::optional<Place> placeOf(const Path& file);

    /// Loads the index's library on the first call.
    [[nodiscard]] CacheIndexLibrary& library();
    /// Creates the index and its folder if necessary. Settles unfinished downloads: a version that was on its
    /// way into the cache when the program ended is either in place or not.
    [[nodiscard]] std::optional<CacheRow> row(const Place& place);
    /// The existing row, or one for a file about which nothing is known.
    [[nodiscard]] CacheRow rowOrNew(const Place& place);
    void put(const Place& place, const CacheRow& row);
    void replace(const Place& gone, const Place& place, const CacheRow& row);
    [[nodiscard]] std::vector<CacheRow> inFolder(const Path& root, const std::string& folder);
    [[nodiscard]] std::vector<std::string> foldersIn(const Path& root, const std::string& folder);
    [[nodiscard]] std::vector<CacheRow> pending(const Path& root);

    /// Whether the local file differs from the version that its row is based on.
    [[nodiscard]] bool isChanged(const Place& place, const CacheRow& row);
    /// Unknown if the index is not available.
    [[nodiscard]] CloudFileState state(const Path& file);

    /// Files that this process is uploading now.
    std::set<std::string>& uploading() { return m_uploading; }

    /// In nanoseconds; 0 if there is no such file.
    [[nodiscard]] static std::int64_t timeOf(const Path& file);

private:
    Cache() = default;
    CacheIndex& opened(const Path& root);
    template <class Action>
    auto withIndex(const Path& root, Action&& action);

    CacheIndexLibrary* m_library = nullptr;
    std::map<Path, std::unique_ptr<CacheIndex>> m_indices;
    std::set<std::string> m_uploading;
};

/// Whether two ETags name the same content as far as their server can tell: a weak one is compared as a
/// strong one. An empty one is never the same.
[[nodiscard]] bool isSameEtag(const std::string& a, const std::string& b);

} // namespace Vs::Cloud
