#pragma once

#include "Server/Skyvault/Drive.h"
#include "Server/Skyvault/Private/Cache.h"

#include <string>

namespace Vs::Cloud {

/// One file of the cache on its way to the drive. The index knows of each step before it is made, so that a
/// new start of the program finds out what became of the last one. Main thread only, but for `send`.
class Upload
{
public:
    /// `isNew`: the drive is to have no such file.
    Upload(Cache::Place place, bool isNew);

    /// In the foreground; see DriveThread::run. Unreachable is no failure: the file waits then.
    [[nodiscard]] DriveResult run();
    /// What waits is sent in the background; `done` is told of it.
    static void post(const Cache::Place& place, const std::function<void()>& done);

    /// Whether the file waits for the drive to be reached.
    bool waits() const { return m_row.pending == CacheRow::Pending::Waiting; }
    const CacheRow& row() const { return m_row; }

private:
    /// What the thread of requests has of an upload.
    struct Sent
    {
        CacheRow row; ///< As it was before.
        DriveUpload upload;
        std::string hash;
        std::uint64_t size = 0;
        std::int64_t time = 0;   ///< Of the local file, before its content was read.
        bool keepsOther = false; ///< Where the cache has never seen what is there.
        DriveEntry entry;
    };
    [[nodiscard]] static DriveResult read(CacheIndexLibrary& library, Sent& sent);
    [[nodiscard]] static DriveResult send(Drive& drive, const DriveWatch& watch, CacheIndexLibrary& library,
                                          Sent& sent);
    [[nodiscard]] static DriveResult resolve(Drive& drive, const DriveWatch& watch,
                                             CacheIndexLibrary& library, Sent& sent, DriveResult refused);
    [[nodiscard]] Sent prepared() const;
    void begin(const Sent& sent);
    [[nodiscard]] DriveResult end(const DriveResult& result, const Sent& sent);
    void tellState() const;

    Cache::Place m_place;
    bool m_isNew;
    bool m_hasWaited = false; ///< Nobody is there to be told: what fails goes on waiting.
    CacheRow m_row;
};

/// A file was looked at on the drive: whether another changed it is noted, and told if that is news.
void noteSeen(const Cache::Place& place, const DriveEntry& entry);
/// The same of a file that the drive has no longer.
void noteRemoved(const Cache::Place& place);

/// "who" and "when" of the version of another, for the person.
[[nodiscard]] std::wstring changedText(const Cache::Place& place, const CacheRow& row);

} // namespace Vs::Cloud
