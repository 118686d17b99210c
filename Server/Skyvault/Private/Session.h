#pragma once

#include "Server/Skyvault/Private/Credentials.h"
#include "Server/Skyvault/Private/DriveThread.h"

#include <boost/filesystem/path.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Vs::Cloud {

/// The one session with a drive: who is signed in where, and how requests get there. Main thread only.
class Session
{
public:
    using Job = std::function<DriveResult(Drive&, const DriveWatch&)>;

    static Session& get();

    /// Opens the transport's library at the first call. Throws std::runtime_error if that fails.
    [[nodiscard]] DriveTransport& transport();

    /// Signs in, in place of who was signed in before, who stays if that fails. With `mayBeAway`, a server
    /// that can't be reached is no failure; the next request tries again.
    [[nodiscard]] DriveResult begin(const Access& access, bool mayBeAway);
    /// What waits for the end of the session first is dropped.
    void end();
    [[nodiscard]] bool exists() const { return m_link != nullptr; }

    /// Whether the server answered last.
    bool isOnline() const { return m_online; }
    const std::string& address() const { return m_access.address; }
    const std::string& user() const { return m_access.credentials.user; }
    /// As the server calls the user.
    const std::string& userName() const { return m_facts.userName; }
    const std::string& webAddress() const { return m_facts.webAddress; }
    const DriveTraits* traits() const { return m_facts.traits ? &*m_facts.traits : nullptr; }

    /// Credentials that were renewed are given to this function, to be kept where the old ones are.
    void onRenewed(std::function<void(const Access&)> keeper) { m_keeper = std::move(keeper); }

    /// Runs requests and returns with the result, as DriveThread::run does; LoginFailed without a session.
    [[nodiscard]] DriveResult run(const std::wstring& title, const Job& job);
    /// Runs requests in the background.
    void post(const Job& job, const DriveThread::Done& done);
    /// Asks the server again who the user is.
    [[nodiscard]] DriveResult verify();

    /// The folder of the cache that a user's files of a drive lie in. Its index, its traits and what may have
    /// been left on the drive lie beside it.
    [[nodiscard]] static boost::filesystem::path folderOf(const std::string& written,
                                                          const std::string& user);

private:
    Session() = default;

    /// What the drive told of itself and the user.
    struct Facts
    {
        std::optional<DriveTraits> traits;
        DriveCredentials credentials;
        std::string userName, webAddress;
    };
    /// The drive as the thread of requests has it.
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
