#pragma once

#include <boost/filesystem/path.hpp>

#include <array>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace TestSupport {

/// A real WebDAV server on this machine with an empty drive, from its construction until its end, also where
/// the test is killed. It runs as a user who may do nothing in particular, at a port that nobody else had, in
/// a folder below TMPDIR that goes with it. When a test has failed, the end of its log is printed.
///
///     TestServer server(TestServer::Kind::Lighttpd);
///     REQUIRE_SERVER(server);
///
/// What a server can't be made to do (it doesn't start, an order isn't followed within half a minute) throws
/// std::runtime_error.
class TestServer
{
public:
    enum class Kind { Apache, Subversion, Nginx, Lighttpd, Rclone, Sabre };
    static constexpr std::array kKinds{Kind::Apache,   Kind::Subversion, Kind::Nginx,
                                       Kind::Lighttpd, Kind::Rclone,     Kind::Sabre};
    /// For names of tests: "Apache".
    static std::string name(Kind kind);

    struct Options
    {
        bool tls = false;    ///< https with a certificate that nobody signed; Apache and Subversion.
        bool digest = false; ///< Digest instead of Basic authentication; Lighttpd.
    };

    explicit TestServer(Kind kind) : TestServer(kind, Options()) {}
    TestServer(Kind kind, const Options& options);
    ~TestServer();
    TestServer(const TestServer&) = delete;
    TestServer& operator=(const TestServer&) = delete;

    /// What isn't installed for it; empty if it runs.
    const std::string& missing() const { return m_missing; }

    Kind kind() const { return m_kind; }
    /// Of the drive's root, with a slash at the end. It stays the same through stop and start.
    const std::string& address() const { return m_address; }
    int port() const;
    const std::string& user() const { return m_user; }
    const std::string& password() const { return m_password; } ///< Another one for each server.
    /// The drive's files on the disk; of Subversion the repository, in which no files are seen.
    boost::filesystem::path folder() const;
    /// The self-signed certificate, PEM; with TLS alone.
    boost::filesystem::path certificate() const { return m_home / "certificate.pem"; }
    boost::filesystem::path log() const { return m_home / "log"; }

    /// Ends it; clients are refused from then on. The drive stays.
    void stop();
    /// The same without giving it time to finish what it does.
    void kill();
    /// Starts it after stop or kill, with the same drive at the same address.
    void start();

    struct Answer
    {
        int status = 0;  ///< 0 if there was none.
        int failure = 0; ///< Curl's exit code: 18 for a part of an answer, 28 for none in time, and so on.
        std::string headers;
        std::string body;
    };
    /// Asks it by the program curl, a process that shares nothing with a client under test. The path follows
    /// the address as it is.
    Answer request(const std::string& method, const std::string& path, const std::string& body = {},
                   const std::vector<std::string>& headers = {}) const;
    /// The same of a proxy before it, by its address with the path; for at most so many seconds.
    Answer requestAt(const std::string& url, const std::string& method, const std::string& body = {},
                     const std::vector<std::string>& headers = {}, double seconds = 30) const;
    /// What a file on the drive holds, by GET; nothing if there is none.
    std::optional<std::string> content(const std::string& path) const;
    /// What lies in a folder, hidden names too, but not what the server keeps for itself; sorted. Not by
    /// requests, since servers hide things.
    std::vector<std::string> names(const std::string& folder = {}) const;
    /// Whether somebody holds a lock on a file.
    bool isLocked(const std::string& path) const;

private:
    class Process;

    std::string order(const char* order);
    void readReady(const std::string& line);

    const Kind m_kind;
    const bool m_hasDigest;
    std::unique_ptr<Process> m_process;
    std::string m_missing, m_address, m_user, m_password;
    boost::filesystem::path m_home;
};

/// Whether a server that isn't installed is a failure and no reason to skip: QUILLET_SERVERS is "required".
bool serversAreRequired();

} // namespace TestSupport

/// Leaves the running test, as skipped and with a notice, where the server isn't installed.
#define REQUIRE_SERVER(server)                                                                               \
    if (!(server).missing().empty() && TestSupport::serversAreRequired())                                    \
        FAIL() << "Not installed: " << (server).missing();                                                   \
    else if (!(server).missing().empty())                                                                    \
    GTEST_SKIP() << "NOTICE: not installed: " << (server).missing()
