#pragma once

#include "Server/Skyvault/Client/Dav/Aside.h"
#include "Server/Skyvault/Client/Dav/Lock.h"
#include "Server/Skyvault/Client/Dav/Session.h"
#include "Server/Skyvault/Client/Dav/Source.h"

#include <memory>
#include <optional>
#include <string>

namespace Vs::Cloud {

/// One save to the drive, from locking to reading back.
class Upload
{
public:
    Upload(Session& session, const DriveUpload& upload, const DriveWatch& watch);

    DriveResult run(DriveEntry& entry);

private:
    DriveResult save(DriveEntry& entry);
    DriveResult underLock(DriveEntry& entry);
    /// Looks up what is there and compares it with what was known.
    DriveResult compare();
    /// The same, compared with what was there when the save began.
    DriveResult compareAgain();
    DriveResult changed(const std::string& why) const;
    DriveResult cutShort(std::uint64_t size) const;

    DriveResult write();
    void wasWritten();
    DriveResult put();
    DriveResult putAndMove();
    /// For when nothing else prevents overwriting somebody's version.
    DriveResult putAside();
    /// Uploads to a hidden name, where either all of it exists or nothing remains.
    DriveResult putHidden(const std::string& hidden);
    /// Unless it has been moved or may still be.
    void removeHidden(const std::string& hidden, const DriveResult& result);
    DriveResult putInChunks();
    /// Moves what is there, which has our size, to the file's place.
    DriveResult moveFrom(const QUrl& place);
    Headers conditions() const;
    bool isGuarded() const;
    /// After a correct If-Match was refused because the ETag is weak in the first second.
    DriveResult putAfterAWhile();
    /// The outcome of a request whose response was lost: success if it was carried out; `isUntouched` if it
    /// wasn't and may be retried.
    DriveResult settle(const Answer& answer, bool& isUntouched);
    /// The same for a request that a server may still be working on: some servers move in two steps.
    DriveResult settleSlowly(const Answer& answer, bool& isUntouched);
    bool isOurs(const DriveEntry& found);

    DriveResult readBack();

    Session& m_session;
    const DriveUpload& m_upload;
    const DriveWatch& m_watch;
    const std::string m_action;
    Source m_source;
    std::unique_ptr<Lock> m_lock;
    std::unique_ptr<Aside> m_aside;
    Leftovers::Note m_hidden;
    bool m_isThere = false;   ///< A file that somebody wrote before this save.
    bool m_wasAbsent = false; ///< The name was free before it was locked.
    bool m_isFresh = false;   ///< What has the name was created by our lock.
    bool m_isWritten = false;
    bool m_isSeen = false;      ///< The server could be queried after a response was lost.
    bool m_mayBeMoving = false; ///< The hidden file may still be moved, or part of it has been.
    std::chrono::steady_clock::time_point m_writtenAt;
    DriveEntry m_before, m_after;
    std::string m_putEtag; ///< As reported by the response to PUT.
};

} // namespace Vs::Cloud
