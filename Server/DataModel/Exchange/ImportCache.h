#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vs {
class ModelFile;
}

namespace Vs::Exchange {

/// Models read from foreign files before, kept as model files in one folder. Several programs may share a
/// folder.
class ImportCache
{
public:
    static constexpr uint64_t kUsualLimit = uint64_t(2) << 30;

    /// `folder` is in the file system's own encoding; it is created, for this user only. `limit` bounds the
    /// sum of the entries in bytes.
    explicit ImportCache(std::string folder, uint64_t limit = kUsualLimit);

    const std::string& folder() const { return m_folder; }
    /// The folder of what workers cache for parts that may occur in other files as well; it counts towards
    /// the limit, too, and exists.
    std::string pieces() const;

    /// The key of a file: of its contents, its name without folder and suffix (used for parts without a
    /// name), the format it is read as, and the versions that read it. Nothing if it can't be read or isn't a
    /// regular file.
    static std::optional<std::string> keyOf(const std::string& path, const char* format);

    /// Notes that what is read from the file of that key, which is in the folder, also depends on other
    /// files.
    void noteOthers(const std::string& key, const std::string& folder,
                    const std::vector<std::string>& others);
    /// The key of a file together with the others that it was found to depend on, as they are now: different
    /// contents give a different key. The same key for one that is complete by itself.
    std::string fullKey(const std::string& key, const std::string& folder) const;

    /// The entry, or null. One that is damaged is dropped. Marks the entry as used now.
    std::shared_ptr<const ModelFile> find(const std::string& key);

    /// A path for a new entry, which nobody else uses: in the folder or, if its disk may not have enough
    /// space, in the temporary folder or in memory, whichever has.
    std::string scratchPath(uint64_t room = 0);
    /// Makes the finished scratch file the entry of that key and drops the least recently used entries beyond
    /// the limit. Returns the entry; throws std::runtime_error if the file is not a model.
    std::shared_ptr<const ModelFile> store(const std::string& key, const std::string& scratch);

private:
    void trim(const std::string& keep);
    std::string pathOf(const std::string& key) const;

    std::string m_folder;
    uint64_t m_limit;
};

/// The cache that the program's imports share.
ImportCache& importCache();

} // namespace Vs::Exchange
