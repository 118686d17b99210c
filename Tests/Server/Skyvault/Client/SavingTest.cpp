#include "Server/Skyvault/Client/Transport.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Servers/FaultProxy.h"
#include "Tests/Support/Servers/TestServer.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace Vs;
using namespace Vs::Cloud;
using TestSupport::Fault;
using TestSupport::FaultProxy;
using TestSupport::TestServer;

namespace {

/// A drive on a real server, with a proxy before it, and files to save there.
class SavingTest : public testing::TestWithParam<TestServer::Kind>
{
protected:
    SavingTest() : m_server(GetParam()), m_proxy(m_server.missing().empty() ? m_server.port() : 9) {}

    void SetUp() override
    {
        REQUIRE_SERVER(m_server);
        m_drive = quilletDriveTransport()->drive(m_proxy.address(), {.kind = DriveCredentials::Kind::Password,
                                                                     .user = m_server.user(),
                                                                     .secret = m_server.password()});
        const DriveResult result = m_drive->connect({}, {});
        ASSERT_TRUE(result.isOk()) << result.detail;
        ASSERT_EQ(m_server.names(), std::vector<std::string>{}) << "the probe left something";
        m_proxy.forgetRequests();
    }

    DriveResult save(const std::string& content, const std::optional<std::string>& known = {},
                     bool keepOther = false, const DriveWatch& watch = {})
    {
        const auto source = m_scratch.write("source", content);
        return m_drive->upload({"/wheel.vlra", source.string(), known, keepOther}, m_entry, watch);
    }
    TestServer m_server;
    FaultProxy m_proxy;
    TestSupport::ScratchFolder m_scratch;
    std::unique_ptr<Drive> m_drive;
    DriveEntry m_entry;
};

std::string nameOf(const testing::TestParamInfo<TestServer::Kind>& info)
{
    return TestServer::name(info.param);
}

} // namespace

TEST_P(SavingTest, AVersionIsWrittenOverTheOneThatItGoesBackToAndOverNoOther)
{
    ASSERT_TRUE(save("first").isOk());
    const std::string first = m_entry.etag;
    EXPECT_EQ(save("again").state, CloudErrorState::Changed);
    EXPECT_EQ(m_server.content("wheel.vlra"), "first");
    // By this client, and by another whose program knows no locks.
    ASSERT_TRUE(save("other", first).isOk());
    EXPECT_EQ(m_entry.size, 5u);
    EXPECT_EQ(save("stale", first).state, CloudErrorState::Changed);
    EXPECT_EQ(m_server.content("wheel.vlra"), "other");

    const DriveResult kept = save("mine", first, true);
    ASSERT_TRUE(kept.isOk()) << kept.detail;
    EXPECT_EQ(m_server.content("wheel.vlra"), "mine");
    std::vector<DriveEntry> entries;
    ASSERT_TRUE(m_drive->list("/", entries, {}).isOk());
    ASSERT_EQ(entries.size(), 2u);
    const auto copy = std::find_if(entries.begin(), entries.end(), [](const DriveEntry& entry) {
        return entry.path.starts_with("/wheel (");
    });
    ASSERT_NE(copy, entries.end());
    const auto read = m_scratch.path() / "read";
    ASSERT_TRUE(m_drive->download(copy->path, read.string(), m_entry, {}).isOk());
    EXPECT_EQ(TestSupport::contentOf(read), "other");
    EXPECT_FALSE(m_server.isLocked("wheel.vlra"));
}

TEST_P(SavingTest, ASaveThatIsCancelledLeavesWhatWasThereAndNothingElse)
{
    const DriveWatch never{[](auto, auto) { return false; }};
    const std::string large(32 << 20, 'n');
    // A fast server would have all of it before the first moment in which a person can cancel.
    const auto cancel = [&](const std::optional<std::string>& known) {
        m_proxy.onRequest([](const FaultProxy::Request& request) -> std::optional<Fault> {
            return request.method == "PUT" ? std::optional(Fault::delay(0.5)) : std::nullopt;
        });
        const DriveResult result = save(large, known, false, never);
        m_proxy.onRequest({});
        return result.state;
    };
    // Subversion makes an empty file of a name that is locked, which stays there.
    if (GetParam() != TestServer::Kind::Subversion) {
        EXPECT_EQ(cancel({}), CloudErrorState::Cancelled);
        EXPECT_EQ(m_server.names(), std::vector<std::string>{});
    }
    ASSERT_TRUE(save("first").isOk());
    EXPECT_EQ(cancel(m_entry.etag), CloudErrorState::Cancelled);
    EXPECT_EQ(m_server.content("wheel.vlra"), "first");
    std::vector<DriveEntry> entries;
    ASSERT_TRUE(m_drive->list("/", entries, {}).isOk());
    EXPECT_EQ(entries.size(), 1u);
    EXPECT_FALSE(m_server.isLocked("wheel.vlra"));
}

INSTANTIATE_TEST_SUITE_P(Servers, SavingTest, testing::ValuesIn(TestServer::kKinds), nameOf);
