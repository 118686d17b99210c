#include "Server/Skyvault/Client/Networking.h"
#include "Server/Skyvault/Client/Transport.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/FaultProxy.h"
#include "Tests/Support/Servers/TestServer.h"

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>
#include <utility>

using namespace Vs;
using namespace Vs::Cloud;
using TestSupport::Fault;
using TestSupport::FaultProxy;
using TestSupport::ScratchFolder;
using TestSupport::TestServer;

namespace {

constexpr int kNobody = 9; ///< A port to which the proxy forwards nothing: it answers everything itself.

DriveCredentials anna()
{
    return {.kind = DriveCredentials::Kind::Password, .user = "anna", .secret = "open:sesame"};
}

std::unique_ptr<Drive> driveAt(const std::string& address, const DriveCredentials& credentials = anna())
{
    auto drive = quilletDriveTransport()->drive(address, credentials);
    drive->patience(std::chrono::seconds(1));
    return drive;
}

std::string folderListing(const std::string& href = "/")
{
    return "<?xml version=\"1.0\"?><d:multistatus xmlns:d=\"DAV:\"><d:response><d:href>" + href +
           "</d:href><d:propstat><d:prop><d:resourcetype><d:collection/></d:resourcetype></d:prop>"
           "<d:status>HTTP/1.1 200 OK</d:status></d:propstat></d:response></d:multistatus>";
}

std::vector<std::string> methods(const FaultProxy& proxy)
{
    std::vector<std::string> result;
    for (const auto& request : proxy.requests())
        result.push_back(request.method);
    return result;
}

class RequestTest : public testing::Test
{
protected:
    FaultProxy m_proxy{kNobody};
};

} // namespace

TEST_F(RequestTest, EachStatusHasItsStateAndATextThatSaysWhatAndWhere)
{
    const std::vector<std::pair<int, CloudErrorState>> table{
        {400, CloudErrorState::BadAnswer},   {401, CloudErrorState::Unauthorized},
        {403, CloudErrorState::Forbidden},   {404, CloudErrorState::NotFound},
        {409, CloudErrorState::NoFolders},   {412, CloudErrorState::Changed},
        {423, CloudErrorState::Locked},      {429, CloudErrorState::TooManyRequests},
        {500, CloudErrorState::ServerError}, {501, CloudErrorState::Unsupported},
        {502, CloudErrorState::ServerError}, {503, CloudErrorState::ServerError},
        {507, CloudErrorState::DriveFull},   {200, CloudErrorState::BadAnswer},
        {304, CloudErrorState::Redirected}};
    for (const auto& [status, state] : table) {
        m_proxy.onRequest([status = status](const auto&) { return Fault::answer(status, "<x/>"); });
        DriveEntry entry;
        const DriveResult result = driveAt(m_proxy.address())->find("/wheel.vlra", entry);
        EXPECT_EQ(result.state, state) << status;
        EXPECT_NE(result.detail.find("\"/wheel.vlra\" on 127.0.0.1:"), std::string::npos) << result.detail;
        EXPECT_EQ(result.detail.find("sesame"), std::string::npos) << result.detail;
    }
}

TEST_F(RequestTest, AServerIsWaitedForAsItAsksButNotWithoutEnd)
{
    m_proxy.onRequest([](const FaultProxy::Request& request) -> std::optional<Fault> {
        if (request.number == 1)
            return Fault::answer(429, {}, {"Retry-After: 1"});
        if (request.number == 2)
            return Fault::answer(503, {}, {"Retry-After: 0"});
        return Fault::answer(207, folderListing());
    });
    DriveEntry entry;
    EXPECT_TRUE(driveAt(m_proxy.address())->find("/", entry).isOk());
    EXPECT_EQ(m_proxy.requests().size(), 3u);

    for (const char* wait :
         {"Retry-After: 3600", "Retry-After: Sun, 06 Nov 2094 08:49:37 GMT", "Retry-After: soon"}) {
        m_proxy.onRequest([wait](const auto&) { return Fault::answer(429, {}, {wait}); });
        m_proxy.forgetRequests();
        const DriveResult result = driveAt(m_proxy.address())->find("/", entry);
        EXPECT_EQ(result.state, CloudErrorState::TooManyRequests) << wait;
        EXPECT_EQ(m_proxy.requests().size(), 1u) << wait;
    }
    // A server that only asks for patience, again and again.
    m_proxy.onRequest([](const auto&) { return Fault::answer(503, {}, {"Retry-After: 0"}); });
    m_proxy.forgetRequests();
    EXPECT_EQ(driveAt(m_proxy.address())->find("/", entry).state, CloudErrorState::ServerError);
    EXPECT_LE(m_proxy.requests().size(), 31u);
}

TEST_F(RequestTest, RedirectionsAreFollowedWithinTheServerAlone)
{
    const auto redirectTo = [&](const std::string& place, int status = 302) {
        m_proxy.forgetRequests();
        m_proxy.onRequest([=](const FaultProxy::Request& request) -> std::optional<Fault> {
            if (request.target == "/there/")
                return Fault::answer(207, folderListing());
            return Fault::answer(status, {}, {"Location: " + place});
        });
        DriveEntry entry;
        return driveAt(m_proxy.address())->find("/", entry);
    };
    EXPECT_TRUE(redirectTo("/there/").isOk());
    EXPECT_TRUE(redirectTo(m_proxy.address() + "there/", 308).isOk());
    FaultProxy other(kNobody);
    for (const std::string& place :
         {std::string("https://evil.example.org/"), other.address(), std::string("file:///etc/passwd"),
          std::string(), std::string("/again/")}) {
        const DriveResult result = redirectTo(place);
        EXPECT_EQ(result.state, CloudErrorState::Redirected) << place;
        EXPECT_LE(m_proxy.requests().size(), 7u) << place;
    }
    EXPECT_TRUE(other.requests().empty());
}

TEST_F(RequestTest, AnUnprotectedAddressIsAskedNothing)
{
    DriveEntry entry;
    EXPECT_EQ(driveAt("http://drive.example.org/")->find("/", entry).state, CloudErrorState::Redirected);
    DriveOffer offer;
    EXPECT_EQ(quilletDriveTransport()->discover("http://drive.example.org/", offer).state,
              CloudErrorState::Redirected);
    EXPECT_EQ(quilletDriveTransport()->discover("  ", offer).state, CloudErrorState::BadName);
}

TEST_F(RequestTest, WhatChangesNothingIsAskedOnceMore)
{
    m_proxy.onRequest([](const FaultProxy::Request& request) -> std::optional<Fault> {
        return request.number == 1 ? Fault::reset() : Fault::answer(207, folderListing());
    });
    DriveEntry entry;
    EXPECT_TRUE(driveAt(m_proxy.address())->find("/", entry).isOk());
    EXPECT_EQ(methods(m_proxy), (std::vector<std::string>{"PROPFIND", "PROPFIND"}));
}

TEST_F(RequestTest, AStallEndsAfterItsTimeAndACancelAtOnce)
{
    m_proxy.onRequest([](const auto&) { return Fault::stall(); });
    DriveEntry entry;
    const DriveResult stalled = driveAt(m_proxy.address())->find("/", entry);
    EXPECT_EQ(stalled.state, CloudErrorState::Unreachable);
    EXPECT_NE(stalled.detail.find("not a byte"), std::string::npos) << stalled.detail;

    int ticks = 0;
    const DriveWatch watch{[&](auto, auto) { return ++ticks < 3; }};
    std::vector<DriveEntry> entries;
    auto drive = driveAt(m_proxy.address());
    drive->patience(std::chrono::hours(1));
    EXPECT_EQ(drive->list("/", entries, watch).state, CloudErrorState::Cancelled);
    EXPECT_EQ(ticks, 3);
}

TEST_F(RequestTest, AnAnswerThatIsCutShortLeavesNoFileAndNoListing)
{
    ScratchFolder scratch;
    const auto target = scratch.write("target", "as it was");
    TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    FaultProxy proxy(server.port());
    auto drive = driveAt(
        proxy.address(),
        {.kind = DriveCredentials::Kind::Password, .user = server.user(), .secret = server.password()});
    server.request("PUT", "file", std::string(100000, 'x'));
    for (const char* method : {"GET", "PROPFIND"}) {
        proxy.onRequest([method](const FaultProxy::Request& request) -> std::optional<Fault> {
            return request.method == method ? std::optional(Fault::cutAnswer(500)) : std::nullopt;
        });
        DriveEntry entry;
        std::vector<DriveEntry> entries;
        EXPECT_FALSE(drive->download("/file", target.string(), entry, {}).isOk()) << method;
        if (std::string(method) == "PROPFIND") {
            EXPECT_FALSE(drive->list("/", entries, {}).isOk());
        }
        EXPECT_TRUE(entries.empty());
    }
    EXPECT_EQ(TestSupport::contentOf(target), "as it was");
    EXPECT_EQ(std::distance(boost::filesystem::directory_iterator(scratch.path()), {}), 1);
}

TEST_F(RequestTest, WhatHasAnEffectIsSentOnceHoweverItsConnectionEnds)
{
    const std::pair<const char*, std::function<Fault()>> ends[] = {
        {"reset", [] { return Fault::reset(); }},
        {"cut at once", [] { return Fault::cutAnswer(0); }},
        {"lost", [] { return Fault::loseAnswer(); }}};
    TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    FaultProxy proxy(server.port());
    for (const bool isReused : {false, true}) {
        for (const QByteArray method : {"MKCOL", "MOVE", "COPY", "PUT", "DELETE", "LOCK", "PROPPATCH"}) {
            for (const QByteArray& body : {QByteArray(), QByteArray("content")}) {
                for (const auto& [name, end] : ends) {
                    SCOPED_TRACE(method.toStdString() + ' ' + name + (isReused ? ", reused" : ", new") +
                                 (body.isEmpty() ? ", empty" : ", with a body"));
                    Http http({.kind = DriveCredentials::Kind::Password,
                               .user = server.user(),
                               .secret = server.password()});
                    http.patience(std::chrono::seconds(5));
                    const QUrl url(QString::fromStdString(proxy.address()) + "wheel");
                    proxy.onRequest({});
                    if (isReused)
                        static_cast<void>(http.ask({.method = "HEAD", .url = url}));
                    proxy.forgetRequests();
                    proxy.onRequest([&end = end](const auto&) { return std::optional(end()); });
                    const Answer answer = http.ask({.method = method,
                                                    .url = url,
                                                    .headers = {{"Destination", url.toEncoded() + "2"}},
                                                    .body = body});
                    EXPECT_EQ(answer.failure.state, CloudErrorState::Unreachable);
                    EXPECT_EQ(methods(proxy), std::vector<std::string>{method.toStdString()});
                }
            }
        }
    }
}

namespace {

/// On a disk, and in memory.
struct LargeFile
{
    explicit LargeFile(const ScratchFolder& folder)
    {
        for (size_t i = 0; content.size() < 20'000'000; ++i)
            content += std::to_string(i) + ' ';
        path = folder.write("large", content).string();
    }
    FilePart part(size_t offset, size_t length) const { return {path, qint64(offset), qint64(length)}; }
    FilePart whole() const { return part(0, content.size()); }

    std::string content, path;
};

DriveCredentials userOf(const TestServer& server)
{
    return {.kind = DriveCredentials::Kind::Password, .user = server.user(), .secret = server.password()};
}

} // namespace

TEST_F(RequestTest, AFileArrivesAsItIsHoweverItIsSaidWhoAsks)
{
    const ScratchFolder scratch;
    const LargeFile file(scratch);
    for (const bool isDigest : {false, true}) {
        TestServer server(TestServer::Kind::Lighttpd, {.digest = isDigest});
        REQUIRE_SERVER(server);
        Http http(userOf(server));
        const QUrl url(QString::fromStdString(server.address()) + "wheel");
        for (const size_t length : {file.content.size(), size_t(0), size_t(3'000'000), size_t(1)}) {
            const size_t offset = std::min<size_t>(5, file.content.size() - length);
            const Answer answer = http.ask({.method = "PUT", .url = url, .file = file.part(offset, length)});
            EXPECT_TRUE(answer.isOk()) << answer.status << answer.failure.detail;
            EXPECT_TRUE(server.content("wheel") == file.content.substr(offset, length)) << length;
        }
    }
}

TEST_F(RequestTest, WhatStopsALargeFileOnItsWayIsToldAndTheOldOneStays)
{
    const ScratchFolder scratch;
    const LargeFile file(scratch);
    TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    FaultProxy proxy(server.port());
    server.request("PUT", "wheel", "old");
    const QUrl url(QString::fromStdString(proxy.address()) + "wheel");
    const auto put = [&](const Fault& fault, const DriveWatch& watch = {}) {
        proxy.onRequest([=](const auto&) { return std::optional(fault); });
        Http http(userOf(server));
        http.patience(std::chrono::seconds(1));
        const Answer answer = http.ask({.method = "PUT", .url = url, .file = file.whole()}, watch);
        EXPECT_EQ(server.content("wheel"), "old");
        return resultOf(answer, "Writing");
    };
    EXPECT_EQ(put(Fault::reset()).state, CloudErrorState::Unreachable);
    EXPECT_EQ(put(Fault::cutRequest(5'000'000)).state, CloudErrorState::Unreachable);
    EXPECT_EQ(put(Fault::stall()).detail, "Writing failed: not a byte was sent or received for 1 s");
    EXPECT_EQ(put(Fault::answer(507)).state, CloudErrorState::DriveFull);
    EXPECT_EQ(put(Fault::stall(), {[](auto, auto) { return false; }}).state, CloudErrorState::Cancelled);
    std::uint64_t inAll = 0;
    put(Fault::stall(), {[&](std::uint64_t done, std::uint64_t total) {
            EXPECT_LE(done, total);
            inAll = total;
            return true;
        }});
    EXPECT_EQ(inAll, file.content.size());

    proxy.onRequest([&](const auto&) {
        boost::filesystem::resize_file(file.path, 1'000'000);
        return std::nullopt;
    });
    const Answer answer = Http(userOf(server)).ask({.method = "PUT", .url = url, .file = file.whole()});
    EXPECT_EQ(answer.failure.state, CloudErrorState::CacheFailed);
    EXPECT_NE(answer.failure.detail.find(file.path), std::string::npos) << answer.failure.detail;
    EXPECT_EQ(server.content("wheel"), "old");
}

TEST_F(RequestTest, TheSystemsProxyIsAskedButNotForThisMachine)
{
    TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    m_proxy.onRequest([](const auto&) { return Fault::answer(403); });
    for (const char* name : {"http_proxy", "https_proxy"})
        setenv(name, m_proxy.address().c_str(), 1);
    DriveEntry entry;
    EXPECT_TRUE(driveAt(server.address(), userOf(server))->find("/", entry).isOk());
    EXPECT_TRUE(m_proxy.requests().empty());
    const DriveResult result = driveAt("https://drive.example.org/")->find("/", entry);
    for (const char* name : {"http_proxy", "https_proxy"})
        unsetenv(name);
    EXPECT_EQ(result.state, CloudErrorState::Unreachable);
    EXPECT_NE(result.detail.find("proxy answered 403"), std::string::npos) << result.detail;
    ASSERT_FALSE(m_proxy.requests().empty());
    EXPECT_EQ(m_proxy.requests()[0].method, "CONNECT");
    EXPECT_EQ(m_proxy.requests()[0].target, "drive.example.org:443");
    EXPECT_FALSE(m_proxy.requests()[0].headers.contains("authorization"));
}

TEST_F(RequestTest, SomethingElseIsAskedWhileARequestIsUnderWay)
{
    m_proxy.onRequest([](const FaultProxy::Request& request) {
        return request.method == "PUT" ? Fault::stall() : Fault::answer(200);
    });
    Http http(anna());
    http.patience(std::chrono::seconds(1));
    const QUrl url(QString::fromStdString(m_proxy.address()));
    bool isAsked = false;
    http.beside([&] {
        if (!std::exchange(isAsked, true)) {
            EXPECT_EQ(http.ask({.method = "LOCK", .url = url}).status, 200);
        }
    });
    EXPECT_EQ(http.ask({.method = "PUT", .url = url, .body = "content"}).status, 0);
    EXPECT_EQ(methods(m_proxy), (std::vector<std::string>{"PUT", "LOCK"}));
}
