#pragma once

#include "Server/Skyvault/Client/Dav/Lock.h"
#include "Server/Skyvault/Client/Dav/Session.h"

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
    DriveResult openSource();
    /// Looks at what is there and compares it with what was known.
    DriveResult compare();
    DriveResult changed(const std::string& why) const;

    DriveResult write();
    void wasWritten();
    DriveResult put();
    DriveResult putAndMove();
    DriveResult putInChunks();
    /// Puts what lies there, of our size, into the file's place.
    DriveResult moveFrom(const QUrl& place);
    Answer putTo(const std::string& path, Headers headers);
    Headers conditions() const;
    /// A right If-Match was refused, since the ETag is a weak one in the first second.
    DriveResult putAfterAWhile();
    /// What became of a request whose answer was lost: success if it was done; `isUntouched` if not, and it
    /// may be sent again.
    DriveResult settle(const Answer& answer, bool& isUntouched);
    /// The same of a MOVE, which may take its time.
    DriveResult settleMove(const Answer& moved);
    bool isOurs(const DriveEntry& found);

    DriveResult readBack();
    /// A file that came to be by locking its name, and that nothing was written to.
    void removeEmpty();

    Session& m_session;
    const DriveUpload& m_upload;
    const DriveWatch& m_watch;
    const std::string m_action;
    qint64 m_size = 0;
    std::unique_ptr<Lock> m_lock;
    bool m_isThere = false;   ///< A file that somebody wrote, before this save.
    bool m_wasAbsent = false; ///< Nothing had the name before it was locked.
    bool m_isFresh = false;   ///< What has the name came to be by our lock.
    bool m_isWritten = false;
    std::chrono::steady_clock::time_point m_writtenAt;
    DriveEntry m_before, m_after;
    QByteArray m_sum;      ///< SHA-1 of what is sent, where the server keeps one.
    std::string m_putEtag; ///< As the answer to PUT told it.
};

} // namespace Vs::Cloud
