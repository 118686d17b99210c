#pragma once

#include "Server/Skyvault/Drive.h"
#include "Server/Skyvault/Private/Cache.h"

#include <string>

namespace Vs::Cloud {

/// Uploads one file of the cache. Each step is recorded in the index before it is taken, so that the next
/// start of the program can find out what became of the last one. Main thread only, except for `send`.
class Upload
{
public:
    /// `isNew`: the drive should not have such a file.
    Upload(Cache::Place place, bool isNew);

    /// In the foreground; see DriveThread::run. Unreachable is not a failure: the file then waits.
    [[nodiscard]] DriveResult run();
    /// Uploads a waiting file in the background; `done` is called at the end.
    static void post(const Cache::Place& place, const std::function<void()>& done);

    /// Whether the file is waiting for the drive to become reachable.
    bool waits() const { return m_row.pending == CacheRow::Pending::Waiting; }
    const CacheRow& row() const { return m_row; }

private:
    /// The request thread's part of an upload.
    struct Sent
    {
        CacheRow row; ///< As it was before.
        DriveUpload upload;
        std::string hash;
        std::uint64_t size = 0;
        std::int64_t time = 0;   ///< Of the local file, before its content was read.
        bool keepsOther = false; ///< If the cache has never seen the existing version.
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
    bool m_hasWaited = false; ///< In the background, with nobody to report to: a failed upload keeps waiting.
    CacheRow m_row;
};

/// A file was looked up on the drive: records whether somebody else changed it, and reports that if it is
/// news.
void noteSeen(const Cache::Place& place, const DriveEntry& entry);
/// The same for a file that is no longer on the drive.
void noteRemoved(const Cache::Place& place);

} // namespace Vs::Cloud
