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

/// What was read from foreign files before, kept as model files in one folder. Several programs may use one
/// folder.
class ImportCache
{
public:
    static constexpr uint64_t kUsualLimit = uint64_t(2) << 30;

    /// `folder` in the file system's own form; it is made, for this user alone. `limit` bounds the sum of the
    /// entries in bytes.
    explicit ImportCache(std::string folder, uint64_t limit = kUsualLimit);

    const std::string& folder() const { return m_folder; }
    /// The folder of what workers keep of parts that may stand in other files as well, which the limit holds
    /// for, too; it is there.
    std::string pieces() const;

    /// The key of a file: of its contents, its name without folder and suffix, which parts get that have none
    /// of their own, the format it is read as, and the versions that read it. Nothing if it can't be read or
    /// isn't an ordinary file.
    static std::optional<std::string> keyOf(const std::string& path, const char* format);

    /// Notes that what is read from the file of that key, which lies in the folder, depends on other files,
    /// too.
    void noteOthers(const std::string& key, const std::string& folder,
                    const std::vector<std::string>& others);
    /// The key of a file with the others that it was found to depend on, as they are now: of other contents,
    /// another key. The same key for one that is complete by itself.
    std::string fullKey(const std::string& key, const std::string& folder) const;

    /// The entry, or null. One that is damaged is dropped. Marks the entry as used now.
    std::shared_ptr<const ModelFile> find(const std::string& key);

    /// A path to write a new entry to, which nobody else uses: in the folder, or where its disk hasn't as
    /// many bytes free as may be needed, in the temporary folder or in memory, as soon as one of these has.
    std::string scratchPath(uint64_t room = 0);
    /// Makes the finished scratch file the entry of that key and drops the entries that weren't used for
    /// longest, as the limit wants it. Returns the entry; throws std::runtime_error if the file is no model.
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
