#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <chrono>
#include <memory>
#include <string>

namespace Vs::Cloud {

/// A lock on a file of the drive, which is renewed at half of its time as long as requests run, and released
/// with this object. A lock whose program was killed ends by itself.
class Lock
{
public:
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    /// Takes the lock. A file that isn't there yet comes to be, empty: `madeFile` says so.
    static DriveResult take(Session& session, const std::string& path, std::unique_ptr<Lock>& lock);

    bool madeFile() const { return m_madeFile; }
    /// Removes the file again, if it is empty; for one that came to be by the lock and was not written to.
    void removeEmptyFile() const;
    /// For a request about the locked file itself.
    Header condition() const { return {"If", "(<" + m_token + ">)"}; }
    /// For a request about another one that also changes this.
    Header taggedCondition() const;
    /// Whether what the server tells of the locked file (`lockdiscovery`) names another's lock first: where
    /// two ask at once, some servers give one to both, and the second has to step back.
    bool isSecond(const DavItem& item) const;
    /// That somebody else has the lock that the server tells of.
    static DriveResult another(const DavItem& item, const std::string& action);
    /// The server no longer knows it, or refused to renew it.
    bool isLost() const { return m_isLost; }

private:
    Lock(Session& session, std::string path);
    DriveResult request(const std::string& action);
    /// The answer of a LOCK was lost: whether the lock is ours nevertheless.
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
