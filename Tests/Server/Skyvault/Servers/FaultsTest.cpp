// Whatever goes wrong with any one request of an operation: it ends with one clear state, the drive holds the
// old or the new content and nothing else, and the local file is unchanged.

#include "Tests/Server/Skyvault/Servers/Faults.h"

#include "Tests/Server/Skyvault/Servers/DriveOnServer.h"
#include "Tests/Support/Files.h"

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>
#include <sstream>
#include <utility>

namespace {

using namespace Vs::Cloud;
using TestSupport::Fault;
using TestSupport::FaultProxy;
using TestSupport::TestServer;
using State = Vs::CloudErrorState;

const std::string kOld = "the old content",
                  kNew = "the new content"; // Of one size: that alone proves nothing.

class FaultsTest : public testing::TestWithParam<TestServer::Kind>
{
protected:
    void SetUp() override
    {
        REQUIRE_SERVER(on.server);
        m_source = on.local.write("source", kNew).string();
        m_isWhole = GetParam() == TestServer::Kind::Apache;
    }

    /// Runs the operation again and again, each time with another of its requests disturbed in another way.
    /// `prepare` restores the drive; `check` is told whether the operation reports success, and which request
    /// was disturbed.
    void disturb(const std::function<void()>& prepare, const std::function<DriveResult()>& run,
                 const std::function<void(bool isDone, const std::string& method)>& check)
    {
        prepare();
        on.proxy->onRequest({});
        on.proxy->forgetRequests();
        ASSERT_EQ(run().detail, "");
        const auto requests = on.proxy->requests();
        bool isAfterLock = false;
        for (const FaultProxy::Request& request : requests) {
            const std::string& method = request.method;
            const bool isLooking = std::exchange(isAfterLock, method == "LOCK");
            // One server shows what each request means to the client; for the others only writes count, and
            // what follows a lock, which creates a file on some.
            if (!m_isWhole && !isLooking && method != "PUT" && method != "MOVE" && method != "GET" &&
                method != "PROPPATCH")
                continue;
            for (const FaultCase& one : faults()) {
                if ((one.forListings && method != "PROPFIND") || (one.isLong && !m_isListing))
                    continue;
                SCOPED_TRACE(std::string(one.name) + " at " + method + ", the request " +
                             std::to_string(request.number));
                prepare();
                disturbOnce(*on.proxy, *on.drive, request.number, one);
                const DriveResult result = run();
                endDisturbance(*on.proxy, *on.drive);
                expectClear(result, one);
                check(result.isOk(), method);
            }
        }
    }

    void expectClear(const DriveResult& result, const FaultCase& one)
    {
        ::expectClear(result, one, on.server.password());
    }

    /// Nothing but these in the folder, and no lock; unless the request that would have removed them was the
    /// disturbed one.
    void expectClean(const std::vector<std::string>& names, const std::string& method)
    {
        if (method != "DELETE" && method != "MOVE") {
            EXPECT_EQ(on.server.names(m_folder.substr(1)), names);
        }
        if (method != "UNLOCK" && !names.empty()) {
            EXPECT_FALSE(on.server.isLocked(m_wheel.substr(1)));
        }
    }

    /// An empty one for the next run: a lock may be left in the last one.
    void makeFolder()
    {
        m_folder = "/run" + std::to_string(++m_runs);
        m_wheel = m_folder + "/wheel";
        on.makeFolder(m_folder);
    }

    DriveOnServer on{GetParam()};
    bool m_isWhole = false; ///< Whether each request is disturbed.
    bool m_isListing = false;
    int m_runs = 0;
    std::string m_folder, m_wheel; ///< Of the current run, on the drive.
    std::string m_source;          ///< On the disk, with what is saved.
};

INSTANTIATE_TEST_SUITE_P(Each, FaultsTest, testing::ValuesIn(TestServer::kKinds),
                         [](const auto& info) { return TestServer::name(info.param); });

TEST_P(FaultsTest, AVersionIsTheOldOrTheNewOne)
{
    std::string known;
    disturb(
        [&] {
            makeFolder();
            on.put(m_wheel, kOld);
            known = on.entry(m_wheel).etag;
        },
        [&] {
            DriveEntry entry;
            return on.drive->upload({.path = m_wheel, .source = m_source, .known = known}, entry, {});
        },
        [&](bool isDone, const std::string& method) {
            const std::string content = on.content(m_wheel);
            EXPECT_TRUE(content == kNew || (content == kOld && !isDone)) << content;
            EXPECT_EQ(TestSupport::contentOf(m_source), kNew);
            expectClean({{"wheel"}}, method);
        });
}

TEST_P(FaultsTest, ANewFileIsThereOrNot)
{
    disturb([&] { makeFolder(); },
            [&] {
                DriveEntry entry;
                return on.drive->upload({.path = m_wheel, .source = m_source}, entry, {});
            },
            [&](bool isDone, const std::string& method) {
                const std::string content = on.content(m_wheel);
                if (method == "DELETE") {
                    EXPECT_TRUE(content == kNew || !isDone) << content;
                    return;
                }
                EXPECT_TRUE(content == kNew || (content == on.kNothing && !isDone)) << content;
                expectClean(content == kNew ? std::vector<std::string>{"wheel"} : std::vector<std::string>(),
                            method);
            });
}

TEST_P(FaultsTest, ADownloadReplacesTheLocalFileAsAWholeOrNotAtAll)
{
    makeFolder();
    on.put(m_wheel, kNew);
    const auto folder = on.local.path() / "cache";
    boost::filesystem::create_directory(folder);
    const std::string target = (folder / "wheel").string();
    disturb([&] { TestSupport::overwrite(target, kOld); },
            [&] {
                DriveEntry entry;
                return on.drive->download(m_wheel, target, entry, {});
            },
            [&](bool isDone, const std::string&) {
                EXPECT_EQ(TestSupport::contentOf(target), isDone ? kNew : kOld);
                EXPECT_EQ(std::distance(boost::filesystem::directory_iterator(folder), {}), 1);
            });
}

TEST_P(FaultsTest, WhatIsFoundAndListedIsTrue)
{
    makeFolder();
    on.put(m_wheel, kNew);
    std::vector<DriveEntry> entries;
    m_isListing = true;
    disturb([] {}, [&] { return on.drive->list(m_folder, entries, {}); },
            [&](bool isDone, const std::string&) {
                ASSERT_EQ(entries.size(), size_t(isDone));
                EXPECT_TRUE(!isDone || entries[0].path == m_wheel);
            });
    DriveEntry entry;
    disturb([&] { entry = {}; }, [&] { return on.drive->find(m_wheel, entry); },
            [&](bool isDone, const std::string&) { EXPECT_EQ(entry.size, isDone ? kNew.size() : 0); });
    disturb([] {}, [&] { return on.drive->connect(knownTraits(GetParam()), {}); },
            [&](bool, const std::string&) { EXPECT_EQ(on.server.names().size(), 1u); });
}

TEST_P(FaultsTest, ARemarkIsKeptOnceWithThoseBeforeIt)
{
    if (!knownTraits(GetParam()).properties)
        return;
    std::string id;
    const auto count = [](const std::string& text, const std::string& part) {
        int count = 0;
        for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
            ++count;
        return count;
    };
    disturb(
        [&] {
            makeFolder();
            on.put(m_wheel, kNew);
            on.proxy->onRequest({});
            ASSERT_EQ(on.drive->comment(m_wheel, "the first", id).detail, "");
        },
        [&] { return on.drive->comment(m_wheel, "the second", id); },
        [&](bool isDone, const std::string&) {
            const std::string kept =
                on.server
                    .request(
                        "PROPFIND", m_wheel.substr(1),
                        "<propfind xmlns=\"DAV:\"><prop><remark xmlns=\"urn:quillet\"/></prop></propfind>",
                        {"Depth: 0", "Content-Type: application/xml"})
                    .body;
            EXPECT_EQ(count(kept, "the first"), 1) << kept;
            EXPECT_TRUE(count(kept, "the second") == 1 || (!isDone && count(kept, "the second") == 0))
                << kept;
            EXPECT_EQ(on.content(m_wheel), kNew);
        });
}

TEST_P(FaultsTest, FoldersAreThereWhenItSaysSo)
{
    disturb([&] { makeFolder(); }, [&] { return on.drive->makeFolders(m_folder + "/a/b"); },
            [&](bool isDone, const std::string&) {
                DriveEntry entry;
                if (isDone) {
                    EXPECT_EQ(on.server.names(m_folder.substr(1) + "/a"), std::vector<std::string>{"b"});
                }
            });
}

/// With two servers, whose answers to a probe differ most and come soon.
class ProbeFaultsTest : public FaultsTest
{
protected:
    /// As far as anything was found out, it is this.
    void expectTrue(const std::string& known)
    {
        std::istringstream lines(textOf(on.drive->traits()));
        for (std::string line; std::getline(lines, line);)
            EXPECT_TRUE(line.ends_with("unknown") || known.find(line + '\n') != known.npos) << line;
    }

    /// What looks like a server that doesn't lock or refuse, where a trait is decided; of the others each
    /// fault in turn, at some requests that represent all. A response that is exactly that of a server that
    /// locks and refuses can't be distinguished from one.
    static std::vector<FaultCase> faultsOf(const FaultProxy::Request& request)
    {
        std::vector<FaultCase> chosen;
        const bool decides = request.method == "LOCK" || request.method == "MOVE" ||
                             request.method == "PROPPATCH" || request.headers.contains("if-match") ||
                             request.headers.contains("if-none-match");
        if (decides && GetParam() == TestServer::Kind::Lighttpd) {
            for (const FaultCase& one : faults()) {
                if (std::string(one.name) == "403" || std::string(one.name) == "a network's own page")
                    chosen.push_back(one);
            }
        } else if (request.number % 5 == 2) {
            const size_t turn = size_t(request.number) / 5 * 3 + size_t(GetParam());
            const FaultCase& one = faults()[turn % faults().size()];
            if (one.name != std::string("412") && one.name != std::string("423") && !one.forListings)
                chosen.push_back(one);
        }
        return chosen;
    }
};

INSTANTIATE_TEST_SUITE_P(Each, ProbeFaultsTest,
                         testing::Values(TestServer::Kind::Lighttpd, TestServer::Kind::Rclone),
                         [](const auto& info) { return TestServer::name(info.param); });

TEST_P(ProbeFaultsTest, WhatIsFoundOutOfAServerIsTrueOrFoundOutBeforeTheNextSave)
{
    const auto renew = [&] { on.drive = driveOf(on.server, on.proxy->address()); };
    renew();
    on.proxy->forgetRequests();
    ASSERT_EQ(on.drive->connect(std::nullopt, {}).detail, "");
    const std::string known = textOf(on.drive->traits());
    ASSERT_TRUE(on.drive->traits().isKnown()) << known;
    const auto requests = on.proxy->requests();
    for (const FaultProxy::Request& request : requests) {
        for (const FaultCase& one : faultsOf(request)) {
            SCOPED_TRACE(std::string(one.name) + " at " + request.method + ", the request " +
                         std::to_string(request.number));
            renew();
            disturbOnce(*on.proxy, *on.drive, request.number, one);
            const DriveResult result = on.drive->connect(std::nullopt, {});
            endDisturbance(*on.proxy, *on.drive);
            expectClear(result, one);
            expectTrue(known);
            if (request.method != "DELETE") {
                EXPECT_EQ(on.server.names(), std::vector<std::string>());
            }
            if (result.isOk() && !on.drive->traits().isKnown()) {
                DriveEntry entry;
                makeFolder();
                EXPECT_EQ(on.drive->upload({.path = m_wheel, .source = m_source}, entry, {}).detail, "");
                EXPECT_EQ(textOf(on.drive->traits()), known);
                on.server.request("DELETE", m_folder.substr(1) + '/');
            }
        }
    }
}

} // namespace
