#pragma once

#include "Server/Skyvault/Client/Dav/Aside.h"
#include "Server/Skyvault/Client/Dav/Lock.h"
#include "Server/Skyvault/Client/Dav/Session.h"
#include "Server/Skyvault/Client/Dav/Source.h"

#include <memory>
#include <optional>
#include <string>

namespace Vs::Cloud {

/// One save to the drive, from the lock to what is read back.
class Upload
{
public:
    Upload(Session& session, const DriveUpload& upload, const DriveWatch& watch);

    DriveResult run(DriveEntry& entry);

private:
    DriveResult save(DriveEntry& entry);
    DriveResult underLock(DriveEntry& entry);
    /// Looks at what is there and compares it with what was known.
    DriveResult compare();
    /// The same with what was there when the save began.
    DriveResult compareAgain();
    DriveResult changed(const std::string& why) const;
    DriveResult cutShort(std::uint64_t size) const;

    DriveResult write();
    void wasWritten();
    DriveResult put();
    DriveResult putAndMove();
    /// Where nothing keeps another from being written over.
    DriveResult putAside();
    /// Sends it to a hidden name, where all of it is or nothing remains.
    DriveResult putHidden(const std::string& hidden);
    /// If it has not been moved and won't be.
    void removeHidden(const std::string& hidden, const DriveResult& result);
    DriveResult putInChunks();
    /// Puts what lies there, of our size, into the file's place.
    DriveResult moveFrom(const QUrl& place);
    Headers conditions() const;
    bool isGuarded() const;
    /// A right If-Match was refused, since the ETag is a weak one in the first second.
    DriveResult putAfterAWhile();
    /// What became of a request whose answer was lost: success if it was done; `isUntouched` if not, and it
    /// may be sent again.
    DriveResult settle(const Answer& answer, bool& isUntouched);
    /// The same of what a server may still be at: some move in two steps.
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
    bool m_isThere = false;   ///< A file that somebody wrote, before this save.
    bool m_wasAbsent = false; ///< Nothing had the name before it was locked.
    bool m_isFresh = false;   ///< What has the name came to be by our lock.
    bool m_isWritten = false;
    bool m_isSeen = false;      ///< The server could be looked at after an answer was lost.
    bool m_mayBeMoving = false; ///< The hidden file may still be moved, or part of it has been.
    std::chrono::steady_clock::time_point m_writtenAt;
    DriveEntry m_before, m_after;
    std::string m_putEtag; ///< As the answer to PUT told it.
};

} // namespace Vs::Cloud
