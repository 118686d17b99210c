#pragma once

#include "Server/Skyvault/Drive.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/FaultProxy.h"
#include "Tests/Support/Servers/TestServer.h"

#include <memory>
#include <string>

/// What each server does, as the client must find out: the table from which its ways of saving were chosen.
Vs::Cloud::DriveTraits knownTraits(TestSupport::TestServer::Kind kind);

/// What was found out about a server, one per line; not its name, the times, and what depends on chance on a
/// busy machine: whether ETags differ within one tick.
std::string textOf(const Vs::Cloud::DriveTraits& traits);

/// A drive with a user who has access.
std::unique_ptr<Vs::Cloud::Drive> driveOf(const TestSupport::TestServer& server, const std::string& address);

/// A server with a proxy before it, and a client behind that.
class DriveOnServer
{
public:
    explicit DriveOnServer(TestSupport::TestServer::Kind kind);

    TestSupport::TestServer server;
    std::unique_ptr<TestSupport::FaultProxy> proxy; ///< None if the server isn't installed.
    std::unique_ptr<Vs::Cloud::Drive> drive;        ///< Connected, with the known traits.
    TestSupport::ScratchFolder local;

    /// Makes text a file of the drive, or a version of one, bypassing the proxy: on the disk, if the server
    /// reads that, otherwise by another client. It is older than a second.
    void put(const std::string& path, const std::string& text);
    void makeFolder(const std::string& path);
    /// The content of a file on the drive, bypassing the proxy and the client; kNothing if there is none.
    std::string content(const std::string& path);
    static constexpr const char* kNothing = "(nothing)";
    /// What the drive reports about a file, bypassing the proxy.
    Vs::Cloud::DriveEntry entry(const std::string& path);

private:
    bool isOnDisk() const;
    void giveAway(const boost::filesystem::path& path) const;

    std::unique_ptr<Vs::Cloud::Drive> m_direct;
};
