#pragma once

#include "Server/DataModel/Model/FileMapping.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace Vs {
class PlainFile;
}

namespace Vs::Native {

class ZipReader;
struct Packing;

/// The first entry of a package, stored uncompressed, so that the beginning of the file identifies it to
/// programs that know nothing else about it; and its content.
constexpr const char* kTypeName = "mimetype";
constexpr const char* kType = "application/vnd.quillet.document";
/// Names of the other entries.
constexpr const char* kManifestName = "manifest.json";
constexpr const char* kThumbnailName = "thumbnail.png";
constexpr const char* kPartFolder = "assets/";

/// Whether the bytes are a PNG no larger than a picture in a list may be.
[[nodiscard]] bool isPicture(std::string_view bytes);

/// Whether bytes are the beginning of a native file, as every file of the present layout begins.
[[nodiscard]] bool beginsAsNative(std::string_view bytes);

/// A zip package that is open for reading. Every operation throws std::runtime_error with the cause; it never
/// takes more memory than the package's own size and its limits allow, whatever the package claims. One
/// thread at a time.
class Package
{
public:
    /// Checks the directory against the entries, and the entries' names.
    explicit Package(std::shared_ptr<const FileMapping> file);
    /// The same without mapping the file, which another program may be writing at this moment: what has
    /// changed can then not be read. For looking at single entries.
    explicit Package(const std::string& path);
    explicit Package(std::unique_ptr<PlainFile> file);
    ~Package();
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;

    /// Loads the library that reads packages, for a process that is about to fork: the child loads nothing.
    static void prepare();

    /// Null if it isn't mapped.
    const std::shared_ptr<const FileMapping>& file() const { return m_file; }
    [[nodiscard]] bool has(const std::string& name) const;
    /// The content of an entry of at most `limit` bytes, verified by its checksum.
    [[nodiscard]] std::string read(const std::string& name, uint64_t limit) const;
    /// Reads an entry of any size to the end, only to verify its checksum. `goOn` is called now and then;
    /// false cancels.
    void check(const std::string& name, const std::function<bool()>& goOn) const;
    [[nodiscard]] Packing packing(const std::string& name) const;
    /// Yields the entry's bytes as they are in the package, unchecked.
    void readPacked(const std::string& name,
                    const std::function<void(const char* data, size_t size)>& take) const;
    /// Unpacks an entry into separate memory, as a file that can be mapped. All unpacked entries together may
    /// take half of this computer's memory.
    [[nodiscard]] std::shared_ptr<const FileMapping> unpack(const std::string& name);

    static constexpr uint64_t kMostManifest = uint64_t(64) << 20;
    static constexpr uint64_t kMostPicture = uint64_t(4) << 20;

private:
    std::shared_ptr<const FileMapping> m_file;
    std::unique_ptr<PlainFile> m_plain; ///< For a package that isn't mapped.
    std::unique_ptr<ZipReader> m_zip;
    uint64_t m_unpacked = 0;
};

} // namespace Vs::Native
