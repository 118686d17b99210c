#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <chrono>
#include <memory>
#include <string>

namespace Vs::Cloud {

/// A lock on a file of the drive, renewed at half its time as long as requests are running, and released with
/// this object. The lock of a killed program expires.
class Lock
{
public:
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    /// Takes the lock. A file that doesn't exist yet is created empty: `madeFile` says so.
    static DriveResult take(Session& session, const std::string& path, std::unique_ptr<Lock>& lock);

    bool madeFile() const { return m_madeFile; }
    /// Removes the file again if it is empty; for one that was created by the lock and not written to.
    void removeEmptyFile() const;
    /// For a request on the locked file itself.
    Header condition() const { return {"If", "(<" + m_token + ">)"}; }
    /// For a request on another file that also changes this one.
    Header taggedCondition() const;
    /// Whether the lock that the server reports first (`lockdiscovery`) is somebody else's: if two ask at the
    /// same time, some servers grant a lock to both, and the second has to back off.
    bool isSecond(const DavItem& item) const;
    /// The failure that somebody else holds the lock reported by the server.
    static DriveResult another(const DavItem& item, const std::string& action);
    /// The server no longer knows the lock, or refused to renew it.
    bool isLost() const { return m_isLost; }

private:
    Lock(Session& session, std::string path);
    DriveResult request(const std::string& action);
    /// After the response to a LOCK was lost: whether the lock is ours nevertheless.
    bool adopt();
    void take(const Answer& answer);
    void renewAtHalfTime();

    Session& m_session;
    const std::string m_path, m_owner;
    QByteArray m_token;
    std::chrono::seconds m_time;
    std::chrono::steady_clock::time_point m_since;
    bool m_madeFile = false, m_isLost = false, m_isRenewing = false;
};

} // namespace Vs::Cloud
