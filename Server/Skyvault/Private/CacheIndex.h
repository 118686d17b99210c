#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Cloud {

/// What is known about one file of the cache.
struct CacheRow
{
    /// Its place, both on the drive and within the cache folder, in the form of DriveEntry::path.
    std::string path;
    /// Whether the drive has the file, as far as known: whether `path` is its identifier.
    bool onDrive = false;

    /// The ETag on the drive of the version that the local file is based on; empty if the cache has never
    /// seen one.
    std::string etag;
    std::uint64_t size = 0;
    std::string hash; ///< Of its content (CacheIndex::hashOf); empty if unknown.
    /// The local file's time for that version, in nanoseconds. If it differs, the content is checked.
    std::int64_t localTime = 0;

    enum class Pending {
        No,
        Uploading, ///< In progress; if nothing is, the program ended meanwhile.
        Waiting    ///< Until the drive can be reached.
    };
    Pending pending = Pending::No;
    std::int64_t since = 0; ///< When it began to wait; in milliseconds of the system clock.
    /// Digests of contents that were sent without a response, separated by blanks: what is found on the drive
    /// may be one of them rather than somebody else's.
    std::string sent;

    /// A version on its way into the cache, stored beside the file until it takes its place.
    std::string incomingEtag, incomingHash;

    /// Somebody else's version that was seen on the drive and isn't here; empty if there is none.
    std::string otherEtag, otherUser;
    std::int64_t otherTime = 0; ///< In seconds of the system clock.

    /// Whether the drive once had it and was then seen without it.
    [[nodiscard]] bool isRemoved() const { return !onDrive && !etag.empty() && pending == Pending::No; }
};

/// The index of one user's cache of one drive, in a file. Each change is on disk when its function returns,
/// and is atomic, whatever happens to the program. All functions throw Vs::Exception that names the file and
/// the cause. Main thread only.
class CacheIndex
{
public:
    virtual ~CacheIndex() = default;

    [[nodiscard]] virtual std::optional<CacheRow> find(const std::string& path) = 0;
    virtual void put(const CacheRow& row) = 0;
    virtual void remove(const std::string& path) = 0;
    /// Both as one change.
    virtual void replace(const std::string& gone, const CacheRow& row) = 0;
    /// All files in a folder ("" for the root), not those in its subfolders.
    [[nodiscard]] virtual std::vector<CacheRow> inFolder(const std::string& folder) = 0;
    /// The paths of a folder's subfolders ("" for the root) that contain a file at any depth; sorted.
    [[nodiscard]] virtual std::vector<std::string> foldersIn(const std::string& folder) = 0;
    /// What is uploading or waiting, oldest first.
    [[nodiscard]] virtual std::vector<CacheRow> pending() = 0;
};

/// The interface of the index's library. `quilletCloudIndex` (extern "C") returns its single object.
class CacheIndexLibrary
{
public:
    virtual ~CacheIndexLibrary() = default;

    /// Opens the index, and creates it if there is none. A damaged one is set aside, with ".broken" appended
    /// to its name, and a new one is created, which `wasDamaged` reports. Throws Vs::Exception.
    [[nodiscard]] virtual std::unique_ptr<CacheIndex> open(const std::string& file, bool& wasDamaged) = 0;
    /// A digest of a file's content, as hexadecimal digits. Any thread. Throws Vs::Exception.
    [[nodiscard]] virtual std::string hashOf(const std::string& file) = 0;
};

} // namespace Vs::Cloud
