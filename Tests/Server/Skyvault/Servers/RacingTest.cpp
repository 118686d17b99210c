// Two clients that save the same file again and again, each based on what it read before: no save that one
// was told had succeeded may be lost to the other's.

#include "Tests/Server/Skyvault/Servers/DriveOnServer.h"
#include "Tests/Support/Files.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

namespace {

using namespace Vs::Cloud;
using TestSupport::TestServer;
using State = Vs::CloudErrorState;

/// How many saves each client must complete. QUILLET_RACES sets another number, for a long race.
int savesOfEach(TestServer::Kind kind)
{
    if (const char* const races = std::getenv("QUILLET_RACES"))
        return std::atoi(races);
    // The first two wait until ETags distinguish versions.
    using enum TestServer::Kind;
    return kind == Apache || kind == Nginx ? 4 : 20;
}

class RacingTest : public testing::TestWithParam<TestServer::Kind>
{
protected:
    /// Adds a line to the drive's content until that many were reported as saved; returns those.
    std::vector<std::string> race(const std::string& name)
    {
        const auto drive = driveOf(on.server, on.server.address());
        drive->patience(std::chrono::seconds(20));
        // With the traits that it finds out itself: whether it loses anything depends on what it waits for.
        EXPECT_EQ(drive->connect(std::nullopt, {}).detail, "");
        const std::string file = (on.local.path() / name).string();
        std::vector<std::string> saved;
        const int wanted = savesOfEach(GetParam());
        for (int tries = 0; int(saved.size()) < wanted && tries < wanted * 200; ++tries) {
            DriveEntry entry;
            DriveResult result = drive->download("/wheel", file, entry, {});
            const std::string line = name + std::to_string(tries) + '\n';
            if (result.isOk()) {
                TestSupport::overwrite(file, TestSupport::contentOf(file) + line);
                result = drive->upload({.path = "/wheel", .source = file, .known = entry.etag}, entry, {});
            }
            if (result.isOk())
                saved.push_back(line);
            else if (result.state == State::Locked)
                std::this_thread::sleep_for(std::chrono::milliseconds(2 + tries % 7));
            else
                EXPECT_TRUE(result.state == State::Changed || isOvertaken(result) || isStumbling(result))
                    << result.detail;
        }
        EXPECT_EQ(int(saved.size()), wanted) << name << " doesn't get through";
        return saved;
    }

    /// rclone sometimes answers with an error while another's MOVE is in progress.
    bool isStumbling(const DriveResult& result) const
    {
        return GetParam() == TestServer::Kind::Rclone && result.state == State::ServerError;
    }

    /// A file that another client replaces while it is read.
    static bool isOvertaken(const DriveResult& result)
    {
        return result.state == State::BadAnswer || result.state == State::NotFound;
    }

    DriveOnServer on{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Each, RacingTest, testing::ValuesIn(TestServer::kKinds),
                         [](const auto& info) { return TestServer::name(info.param); });

TEST_P(RacingTest, NoSaveThatWasAnsweredIsLost)
{
    REQUIRE_SERVER(on.server);
    on.put("/wheel", "begun\n");
    std::vector<std::string> first, second;
    std::thread other([&] { second = race("second"); });
    first = race("first");
    other.join();

    const std::string content = on.content("/wheel");
    for (const auto* saved : {&first, &second})
        for (const std::string& line : *saved)
            EXPECT_NE(content.find('\n' + line), std::string::npos) << "lost: " << line;
    EXPECT_FALSE(on.server.isLocked("wheel"));
    EXPECT_EQ(on.server.names(), std::vector<std::string>{"wheel"});
}

} // namespace
