#pragma once

#include "Server/Skyvault/Private/Credentials.h"
#include "Server/Skyvault/Private/DriveThread.h"

#include <boost/filesystem/path.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Vs::Cloud {

/// The single session with a drive: who is signed in where, and how requests get there. Main thread only.
class Session
{
public:
    using Job = std::function<DriveResult(Drive&, const DriveWatch&)>;

    static Session& get();

    /// Loads the transport's library on the first call. Throws std::runtime_error if that fails.
    [[nodiscard]] DriveTransport& transport();

    /// Signs in, replacing the previous session, which stays if that fails. With `mayBeAway`, an unreachable
    /// server isn't a failure; the next request tries again.
    [[nodiscard]] DriveResult begin(const Access& access, bool mayBeAway);
    /// Requests that are still waiting are dropped.
    void end();
    [[nodiscard]] bool exists() const { return m_link != nullptr; }

    /// Whether the server responded last time.
    bool isOnline() const { return m_online; }
    const std::string& address() const { return m_access.address; }
    const std::string& user() const { return m_access.credentials.user; }
    /// The user's name on the server.
    const std::string& userName() const { return m_facts.userName; }
    const std::string& webAddress() const { return m_facts.webAddress; }
    const DriveTraits* traits() const { return m_facts.traits ? &*m_facts.traits : nullptr; }

    /// `keeper` receives renewed credentials, to store them in place of the old ones.
    void onRenewed(std::function<void(const Access&)> keeper) { m_keeper = std::move(keeper); }

    /// Runs requests and returns the result, as DriveThread::run does; LoginFailed without a session.
    [[nodiscard]] DriveResult run(const std::wstring& title, const Job& job);
    /// Runs requests in the background.
    void post(const Job& job, const DriveThread::Done& done);
    /// Asks the server again who the user is.
    [[nodiscard]] DriveResult verify();

    /// The cache folder for a user's files of a drive. Its index, its traits and the notes of what may have
    /// been left on the drive are beside it.
    [[nodiscard]] static boost::filesystem::path folderOf(const std::string& written,
                                                          const std::string& user);

private:
    Session() = default;

    /// What the drive reported about itself and the user.
    struct Facts
    {
        std::optional<DriveTraits> traits;
        DriveCredentials credentials;
        std::string userName, webAddress;
    };
    /// The drive as the request thread sees it.
    struct Link
    {
        std::unique_ptr<Drive> drive;
        std::optional<DriveTraits> known;
        bool connected = false;

        [[nodiscard]] DriveResult connect(const DriveWatch& watch);
        [[nodiscard]] Facts facts() const;
    };
    [[nodiscard]] static DriveResult work(Link& link, Facts& facts, const Job& job, const DriveWatch& watch);
    void learn(const Facts& facts);
    void ended(const DriveResult& result);

    DriveTransport* m_transport = nullptr;
    std::shared_ptr<Link> m_link;
    Access m_access;
    Facts m_facts;
    bool m_online = false;
    std::function<void(const Access&)> m_keeper;
};

} // namespace Vs::Cloud
