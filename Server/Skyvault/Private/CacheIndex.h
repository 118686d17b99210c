#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Cloud {

/// What is known of one file of the cache.
struct CacheRow
{
    /// Where it lies, on the drive and from the folder of the cache, as DriveEntry::path.
    std::string path;
    /// Whether the drive has the file, as far as is known: whether `path` is its identifier.
    bool onDrive = false;

    /// Of the version that the local file goes back to: the ETag that it has on the drive; empty if the cache
    /// has never seen one.
    std::string etag;
    std::uint64_t size = 0;
    std::string hash; ///< Of its content (CacheIndex::hashOf); empty if unknown.
    /// Of the local file when it was that version; nanoseconds. Another time makes one look at the content.
    std::int64_t localTime = 0;

    enum class Pending {
        No,
        Uploading, ///< What is under way; if nothing is, the program came to its end meanwhile.
        Waiting    ///< Until the drive can be reached.
    };
    Pending pending = Pending::No;
    std::int64_t since = 0; ///< When it began to wait; milliseconds of the system's clock.
    /// Digests of contents that were sent without an answer, with blanks between them: what is found on the
    /// drive may be one of them, and then is nobody else's.
    std::string sent;

    /// A version that is on its way into the cache, beside the file until it takes its place.
    std::string incomingEtag, incomingHash;

    /// The version of another that was seen on the drive and isn't here; empty if there is none.
    std::string otherEtag, otherUser;
    std::int64_t otherTime = 0; ///< Seconds of the system's clock.

    /// Whether the drive had it and was seen without it.
    [[nodiscard]] bool isRemoved() const { return !onDrive && !etag.empty() && pending == Pending::No; }
};

/// The index of one user's cache of one drive, in a file. Each change is on the disk when its function
/// returns, as a whole or not at all, whatever becomes of the program. All functions throw Vs::Exception that
/// names the file and the cause. Main thread only.
class CacheIndex
{
public:
    virtual ~CacheIndex() = default;

    [[nodiscard]] virtual std::optional<CacheRow> find(const std::string& path) = 0;
    virtual void put(const CacheRow& row) = 0;
    virtual void remove(const std::string& path) = 0;
    /// Both in one change.
    virtual void replace(const std::string& gone, const CacheRow& row) = 0;
    /// Of all files in a folder ("" for the root), not of those in folders below.
    [[nodiscard]] virtual std::vector<CacheRow> inFolder(const std::string& folder) = 0;
    /// The paths of the folders in a folder ("" for the root) that hold a file at whatever depth; sorted.
    [[nodiscard]] virtual std::vector<std::string> foldersIn(const std::string& folder) = 0;
    /// What is uploading or waiting, the oldest first.
    [[nodiscard]] virtual std::vector<CacheRow> pending() = 0;
};

/// What the index's library gives. Its one object is found by `quilletCloudIndex` (extern "C").
class CacheIndexLibrary
{
public:
    virtual ~CacheIndexLibrary() = default;

    /// Opens the index, and makes it if there is none. One that is damaged is set aside, with ".broken"
    /// behind its name, and a new one is made; `wasDamaged` tells. Throws Vs::Exception.
    [[nodiscard]] virtual std::unique_ptr<CacheIndex> open(const std::string& file, bool& wasDamaged) = 0;
    /// A digest of a file's content, as hexadecimal digits. Any thread. Throws Vs::Exception.
    [[nodiscard]] virtual std::string hashOf(const std::string& file) = 0;
};

} // namespace Vs::Cloud
