// What the client finds out about each server is what that is known to do.

#include "Server/Skyvault/Client/Transport.h"
#include "Tests/Server/Skyvault/Servers/DriveOnServer.h"
#include "Tests/Support/Files.h"

#include <gtest/gtest.h>

namespace {

using namespace Vs::Cloud;
using TestSupport::TestServer;

class TraitsTest : public testing::TestWithParam<TestServer::Kind>
{
};

INSTANTIATE_TEST_SUITE_P(Each, TraitsTest, testing::ValuesIn(TestServer::kKinds),
                         [](const auto& info) { return TestServer::name(info.param); });

TEST_P(TraitsTest, AreFoundOutOnceAndLeaveNothing)
{
    DriveOnServer on(GetParam());
    REQUIRE_SERVER(on.server);
    on.drive = driveOf(on.server, on.proxy->address());
    on.drive->patience(std::chrono::seconds(10));
    ASSERT_EQ(on.drive->connect(std::nullopt, {}).detail, "");
    EXPECT_EQ(textOf(on.drive->traits()), textOf(knownTraits(GetParam())));
    EXPECT_EQ(on.server.names(), std::vector<std::string>());

    // What is known and younger than 30 days isn't asked again; what is older is.
    DriveTraits known = on.drive->traits();
    on.proxy->forgetRequests();
    ASSERT_EQ(on.drive->connect(known, {}).detail, "");
    for (const auto& request : on.proxy->requests())
        EXPECT_TRUE(request.method == "PROPFIND" || request.method == "OPTIONS" || request.method == "GET")
            << request.method << ' ' << request.target;
    known.probed -= std::chrono::hours(24 * 31);
    on.proxy->forgetRequests();
    ASSERT_EQ(on.drive->connect(known, {}).detail, "");
    EXPECT_GT(on.proxy->requests().size(), 8u);
}

TEST(DigestTest, AServerThatWantsItIsProbedAndSavedToLikeOthers)
{
    TestServer server(TestServer::Kind::Lighttpd, {.digest = true});
    REQUIRE_SERVER(server);
    const auto drive = driveOf(server, server.address());
    ASSERT_EQ(drive->connect(std::nullopt, {}).detail, "");
    EXPECT_EQ(textOf(drive->traits()), textOf(knownTraits(TestServer::Kind::Lighttpd)));
    const TestSupport::ScratchFolder local;
    const std::string source = local.write("source", std::string(300000, 'n')).string(),
                      target = (local.path() / "target").string();
    DriveEntry entry;
    EXPECT_EQ(drive->upload({.path = "/wheel", .source = source}, entry, {}).detail, "");
    EXPECT_EQ(drive->upload({.path = "/wheel", .source = source, .known = entry.etag}, entry, {}).detail, "");
    EXPECT_EQ(drive->download("/wheel", target, entry, {}).detail, "");
    EXPECT_EQ(TestSupport::contentOf(target), TestSupport::contentOf(source));
    const auto other = quilletDriveTransport()->drive(
        server.address(),
        {.kind = DriveCredentials::Kind::Password, .user = server.user(), .secret = "wrong"});
    EXPECT_EQ(other->connect(std::nullopt, {}).state, Vs::CloudErrorState::Unauthorized);
}

TEST_P(TraitsTest, NoRequestIsOfAKindThatServersMistake)
{
    DriveOnServer on(GetParam());
    REQUIRE_SERVER(on.server);
    DriveEntry entry;
    std::vector<DriveEntry> entries;
    const std::string source = on.local.write("source", "round").string();
    ASSERT_EQ(on.drive->connect(std::nullopt, {}).detail, "");
    ASSERT_EQ(on.drive->makeFolders("/a/b").detail, "");
    ASSERT_EQ(on.drive->upload({.path = "/a/b/wheel", .source = source}, entry, {}).detail, "");
    ASSERT_EQ(
        on.drive->upload({.path = "/a/b/wheel", .source = source, .known = entry.etag}, entry, {}).detail,
        "");
    ASSERT_EQ(on.drive->list("/a/b", entries, {}).detail, "");
    ASSERT_EQ(on.drive->download("/a/b/wheel", source, entry, {}).detail, "");
    for (const auto& request : on.proxy->requests()) {
        SCOPED_TRACE(request.method + ' ' + request.target);
        EXPECT_FALSE(request.headers.contains("content-range"));
        EXPECT_FALSE(request.headers.contains("transfer-encoding"));
        const auto depth = request.headers.find("depth");
        if (request.method == "PROPFIND" || depth != request.headers.end()) {
            ASSERT_NE(depth, request.headers.end());
            EXPECT_TRUE(depth->second == "0" || depth->second == "1") << depth->second;
        }
    }
}

} // namespace
