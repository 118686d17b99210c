// Saves that are cancelled, that collide with another's, and whose files have wrong times: nobody's work is
// lost.

#include "Tests/Server/Skyvault/Servers/DriveOnServer.h"
#include "Tests/Support/Files.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <gtest/gtest.h>
#include <regex>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using namespace Vs::Cloud;
using TestSupport::Fault;
using TestSupport::FaultProxy;
using TestSupport::TestServer;
using State = Vs::CloudErrorState;

const std::string kOld = "the old content", kNew = "the new content", kOther = "another's work.";

class SavesTest : public testing::TestWithParam<TestServer::Kind>
{
protected:
    DriveResult save(const std::string& path, const std::string& source,
                     const std::optional<std::string>& known, const DriveWatch& watch = {})
    {
        DriveEntry entry;
        return on.drive->upload({.path = path, .source = source, .known = known}, entry, watch);
    }

    DriveOnServer on{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Each, SavesTest, testing::ValuesIn(TestServer::kKinds),
                         [](const auto& info) { return TestServer::name(info.param); });

TEST_P(SavesTest, AVersionIsWrittenOverTheOneThatItGoesBackToAndOverNoOther)
{
    REQUIRE_SERVER(on.server);
    const std::string source = on.local.write("source", kNew).string();
    on.put("/wheel", kOld);
    const std::string old = on.entry("/wheel").etag;
    EXPECT_EQ(save("/wheel", source, std::nullopt).state, State::Changed);
    EXPECT_EQ(on.content("/wheel"), kOld);
    // Of another size: for some servers, two of one size within a tick of the clock are one version.
    const std::string other = kOther + " Done.";
    on.put("/wheel", other);
    EXPECT_EQ(save("/wheel", source, old).state, State::Changed);
    EXPECT_EQ(on.content("/wheel"), other);

    DriveEntry entry;
    const DriveResult kept =
        on.drive->upload({.path = "/wheel", .source = source, .known = old, .keepOther = true}, entry, {});
    EXPECT_EQ(kept.detail, "");
    EXPECT_EQ(on.content("/wheel"), kNew);
    std::vector<DriveEntry> entries;
    EXPECT_EQ(on.drive->list("/", entries, {}).detail, "");
    std::erase_if(entries, [](const DriveEntry& one) { return one.path == "/wheel"; });
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_TRUE(entries.front().path.starts_with("/wheel (")) << entries.front().path;
    const std::string read = (on.local.path() / "read").string();
    EXPECT_EQ(on.drive->download(entries.front().path, read, entry, {}).detail, "");
    EXPECT_EQ(TestSupport::contentOf(read), other);
    EXPECT_FALSE(on.server.isLocked("wheel"));
}

TEST_P(SavesTest, OfAnEmptyFileNoCopyIsKept)
{
    REQUIRE_SERVER(on.server);
    on.put("/wheel", "");
    const std::string source = on.local.write("source", kNew).string();
    EXPECT_EQ(save("/wheel", source, std::nullopt).state, State::Changed);
    DriveEntry entry;
    const DriveUpload upload{.path = "/wheel", .source = source, .known = {}, .keepOther = true};
    EXPECT_EQ(on.drive->upload(upload, entry, {}).detail, "");
    EXPECT_EQ(on.content("/wheel"), kNew);
    EXPECT_EQ(on.server.names(), std::vector<std::string>{"wheel"});
}

TEST_P(SavesTest, AfterACancelledOneTheOldIsThereAndTheNextGetsThrough)
{
    REQUIRE_SERVER(on.server);
    on.put("/wheel", kOld);
    const std::string large(size_t(24) << 20, 'n');
    const std::string source = on.local.write("source", large).string();
    // As soon as a byte has been sent, and when all have.
    for (const std::uint64_t most : {std::uint64_t(0), std::uint64_t(large.size()) - 1}) {
        const DriveWatch watch{[&](std::uint64_t done, std::uint64_t) { return done <= most; }};
        const DriveResult cancelled = save("/wheel", source, on.entry("/wheel").etag, watch);
        EXPECT_TRUE(cancelled.isOk() || cancelled.state == State::Cancelled) << cancelled.detail;
        // A server that has all of it may still write it for a client that has gone.
        const size_t size = on.content("/wheel").size();
        EXPECT_TRUE(size == large.size() || (size == kOld.size() && !cancelled.isOk())) << size;
        const std::string small = on.local.write("small", kOld).string();
        EXPECT_EQ(save("/wheel", small, on.entry("/wheel").etag).detail, "");
        EXPECT_EQ(on.content("/wheel"), kOld);
        // Apache keeps a part of what was cancelled until it has noticed that nobody sends the rest.
        for (int tries = 0; tries < 100 && on.server.names().size() > 1; ++tries)
            usleep(50000);
        EXPECT_EQ(on.server.names(), std::vector<std::string>{"wheel"});
    }
}

TEST_P(SavesTest, AFileWhoseTimeIsOneToComeIsSavedLikeOthers)
{
    REQUIRE_SERVER(on.server);
    if (GetParam() == TestServer::Kind::Subversion)
        return; // It has no files whose time another could set.
    on.put("/wheel", kOld);
    boost::filesystem::last_write_time(on.server.folder() / "wheel", std::time(nullptr) + 3600);
    const std::string source = on.local.write("source", kNew).string();
    EXPECT_EQ(save("/wheel", source, on.entry("/wheel").etag).detail, "");
    EXPECT_EQ(on.content("/wheel"), kNew);
}

TEST(LocksTest, ALockIsRenewedAtHalfItsTimeAndReleasedInTheEnd)
{
    DriveOnServer on(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(on.server);
    on.put("/wheel", kOld);
    std::string token;
    std::vector<std::string> locks; ///< With their conditions.
    on.proxy->onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        // The server may have closed its connection by then; a second request is sent at once.
        if (request.method == "PUT" && request.ofMethod == 1)
            return Fault::delay(6);
        if (request.method != "LOCK")
            return std::nullopt;
        const auto condition = request.headers.find("if");
        locks.push_back(condition == request.headers.end() ? std::string() : condition->second);
        if (locks.size() > 1)
            return std::nullopt;
        // A server that grants ten seconds.
        const std::string headers =
            on.server
                .request("LOCK", "wheel",
                         "<lockinfo xmlns='DAV:'><lockscope><exclusive/></lockscope><locktype><write/>"
                         "</locktype></lockinfo>",
                         {"Content-Type: application/xml"})
                .headers;
        std::smatch match;
        if (std::regex_search(headers, match, std::regex("Lock-Token: <([^>]*)>", std::regex::icase)))
            token = match[1];
        return Fault::answer(200,
                             "<prop xmlns='DAV:'><lockdiscovery><activelock><timeout>Second-10</timeout>"
                             "</activelock></lockdiscovery></prop>",
                             {"Lock-Token: <" + token + ">"});
    });
    DriveEntry entry;
    const std::string source = on.local.write("source", kNew).string();
    const DriveUpload upload{.path = "/wheel", .source = source, .known = on.entry("/wheel").etag};
    EXPECT_EQ(on.drive->upload(upload, entry, {}).detail, "");
    EXPECT_EQ(locks, (std::vector<std::string>{"", "(<" + token + ">)"}));
    EXPECT_EQ(on.content("/wheel"), kNew);
    EXPECT_FALSE(on.server.isLocked("wheel"));
}

TEST(DownloadsTest, OneThatTheDiskDoesNotTakeSaysSoAndLeavesTheOldFile)
{
    DriveOnServer on(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(on.server);
    on.put("/wheel", std::string(size_t(1) << 20, 'n'));
    const TestSupport::ScratchFolder cache;
    const std::string target = cache.write("wheel", kOld).string();
    DriveEntry entry;
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{size_t(1) << 16, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    const DriveResult result = on.drive->download("/wheel", target, entry, {});
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(result.state, State::CacheFailed);
    EXPECT_NE(result.detail.find('"' + target + '"'), std::string::npos) << result.detail;
    EXPECT_EQ(TestSupport::contentOf(target), kOld);
    EXPECT_EQ(std::distance(boost::filesystem::directory_iterator(cache.path()), {}), 1);
    // Where nobody can write, not even root.
    const DriveResult refused = on.drive->download("/wheel", "/proc/wheel", entry, {});
    EXPECT_EQ(refused.state, State::CacheFailed);
    EXPECT_NE(refused.detail.find("\"/proc/wheel\""), std::string::npos) << refused.detail;
}

/// Servers that don't refuse stale versions, treated as if they didn't lock either.
class UnguardedSavesTest : public SavesTest
{
};

INSTANTIATE_TEST_SUITE_P(Each, UnguardedSavesTest,
                         testing::Values(TestServer::Kind::Nginx, TestServer::Kind::Rclone),
                         [](const auto& info) { return TestServer::name(info.param); });

TEST_P(UnguardedSavesTest, WhatAnotherWritesMeanwhileIsKeptAsAFileBesideIt)
{
    REQUIRE_SERVER(on.server);
    DriveTraits traits = knownTraits(GetParam());
    traits.locks = false;
    ASSERT_EQ(on.drive->connect(traits, {}).detail, "");
    const std::string source = on.local.write("source", kNew).string();
    int requests = 0;
    for (int at = 0; at <= requests; ++at) {
        SCOPED_TRACE("before request " + std::to_string(at));
        const std::string folder = "run" + std::to_string(at);
        const std::string wheel = folder + "/wheel";
        ASSERT_EQ(on.server.request("MKCOL", folder + '/').status, 201);
        on.put('/' + wheel, kOld);
        // It was written earlier, which rclone wouldn't know: it keeps times.
        if (GetParam() != TestServer::Kind::Rclone)
            boost::filesystem::last_write_time(on.server.folder() / wheel, std::time(nullptr) - 100);
        int lastMove = 0;
        const std::string known = on.entry('/' + wheel).etag;
        on.proxy->forgetRequests();
        on.proxy->onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
            if (request.number == at)
                on.server.request("PUT", wheel, kOther);
            if (request.method == "MOVE")
                lastMove = request.number;
            return std::nullopt;
        });
        const DriveResult result = save('/' + wheel, source, known);
        on.proxy->onRequest({});
        std::vector<std::string> contents;
        for (const std::string& name : on.server.names(folder))
            contents.push_back(TestSupport::contentOf(on.server.folder() / folder / name));
        const auto has = [&](const std::string& content) {
            return std::find(contents.begin(), contents.end(), content) != contents.end();
        };
        if (at == 0) {
            requests = int(on.proxy->requests().size());
            EXPECT_EQ(result.detail, "");
            EXPECT_EQ(contents, std::vector<std::string>{kNew});
            continue;
        }
        EXPECT_TRUE(has(kOther));
        // A client that writes without checking after everything is done overwrites it.
        EXPECT_TRUE(has(kNew) || result.state == State::Changed || at > lastMove) << result.detail;
    }
}

} // namespace
