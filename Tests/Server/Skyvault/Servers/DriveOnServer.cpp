#include "Tests/Server/Skyvault/Servers/DriveOnServer.h"

#include "Server/Skyvault/Client/Transport.h"
#include "Tests/Support/Files.h"

#include <QCoreApplication>

#include <boost/filesystem/operations.hpp>

#include <ctime>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

using TestSupport::FaultProxy;
using TestSupport::TestServer;
using namespace Vs::Cloud;

namespace {

constexpr std::chrono::milliseconds kPatience{15000};

/// Sockets require an application, which no test needs itself.
void haveApplication()
{
    static int count = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(count, arguments);
}

void require(const DriveResult& result)
{
    if (!result.isOk())
        throw std::runtime_error(result.detail);
}

} // namespace

DriveTraits knownTraits(TestServer::Kind kind)
{
    DriveTraits traits{.locks = true, .keepsOldOnBreak = true, .probed = std::chrono::system_clock::now()};
    const auto is = [kind](auto... kinds) { return ((kind == kinds) || ...); };
    using enum TestServer::Kind;
    traits.refusesExisting = traits.refusesStale = !is(Nginx, Rclone);
    traits.weakEtags = is(Apache);
    traits.keepsOldOnBreak = !is(Rclone);
    traits.movesOntoExisting = !is(Subversion, Lighttpd);
    traits.etagAfterPut = is(Lighttpd, Rclone, Sabre);
    traits.etagFromPropfind = is(Apache, Subversion, Lighttpd, Rclone, Sabre);
    traits.etagsDifferInOneTick = is(Subversion, Lighttpd, Rclone, Sabre);
    traits.properties = is(Apache, Lighttpd, Sabre);
    return traits;
}

std::string textOf(const DriveTraits& traits)
{
    const std::pair<const char*, Trait> lines[] = {
        {"locks", traits.locks},
        {"refuses existing", traits.refusesExisting},
        {"refuses stale", traits.refusesStale},
        {"weak ETags", traits.weakEtags},
        {"keeps the old on a break", traits.keepsOldOnBreak},
        {"moves onto existing", traits.movesOntoExisting},
        {"ETag after PUT", traits.etagAfterPut},
        {"ETag from PROPFIND", traits.etagFromPropfind},
        {"properties", traits.properties},
    };
    std::string text;
    for (const auto& [name, is] : lines)
        text += std::string(name) + (!is.isKnown() ? ": unknown\n" : is ? ": yes\n" : ": no\n");
    return text;
}

std::unique_ptr<Drive> driveOf(const TestServer& server, const std::string& address)
{
    haveApplication();
    auto drive = quilletDriveTransport()->drive(
        address,
        {.kind = DriveCredentials::Kind::Password, .user = server.user(), .secret = server.password()});
    drive->patience(kPatience);
    return drive;
}

DriveOnServer::DriveOnServer(TestServer::Kind kind) : server(kind)
{
    if (!server.missing().empty())
        return;
    proxy = std::make_unique<FaultProxy>(server.port());
    drive = driveOf(server, proxy->address());
    m_direct = driveOf(server, server.address());
    require(drive->connect(knownTraits(kind), {}));
    require(m_direct->connect(knownTraits(kind), {}));
}

bool DriveOnServer::isOnDisk() const
{
    // Subversion has no files there, and rclone doesn't know those that it didn't write.
    return server.kind() != TestServer::Kind::Subversion && server.kind() != TestServer::Kind::Rclone;
}

void DriveOnServer::giveAway(const boost::filesystem::path& path) const
{
    struct stat owner = {};
    if (::stat(server.folder().c_str(), &owner) != 0 ||
        ::chown(path.c_str(), owner.st_uid, owner.st_gid) != 0)
        throw std::runtime_error(path.string() + " can't be given to the server");
}

void DriveOnServer::put(const std::string& path, const std::string& text)
{
    if (isOnDisk()) {
        const boost::filesystem::path file = server.folder() / path;
        TestSupport::overwrite(file, text);
        giveAway(file);
        // A file of this second has a weak ETag on Apache, which the client would wait for each time.
        boost::filesystem::last_write_time(file, std::time(nullptr) - 100);
        return;
    }
    DriveEntry there;
    const bool isThere = m_direct->find(path, there).isOk();
    DriveUpload upload{.path = path, .source = local.write("put", text).string()};
    if (isThere)
        upload.known = there.etag;
    require(m_direct->upload(upload, there, {}));
}

void DriveOnServer::makeFolder(const std::string& path)
{
    if (!isOnDisk())
        return require(m_direct->makeFolders(path));
    boost::filesystem::create_directory(server.folder() / path);
    giveAway(server.folder() / path);
}

std::string DriveOnServer::content(const std::string& path)
{
    if (server.kind() == TestServer::Kind::Subversion)
        return server.content(path.substr(1)).value_or(kNothing);
    const boost::filesystem::path file = server.folder() / path;
    return boost::filesystem::exists(file) ? TestSupport::contentOf(file) : kNothing;
}

DriveEntry DriveOnServer::entry(const std::string& path)
{
    DriveEntry there;
    require(m_direct->find(path, there));
    return there;
}
