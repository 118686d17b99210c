// That the servers of the tests are what other tests take them for.

#include "Tests/Support/Servers/TestServer.h"

#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using TestSupport::TestServer;

class TestServerTest : public testing::TestWithParam<TestServer::Kind>
{
};

INSTANTIATE_TEST_SUITE_P(Each, TestServerTest, testing::ValuesIn(TestServer::kKinds),
                         [](const auto& info) { return TestServer::name(info.param); });

/// Whether nobody takes connections there within some seconds.
bool isGone(const std::string& address)
{
    for (int tries = 0; tries < 100; ++tries) {
        if (std::system(("curl -s --noproxy '*' -m 5 -o /dev/null " + address).c_str()) != 0)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

TEST_P(TestServerTest, KeepsItsDriveThroughStopAndStart)
{
    TestServer server(GetParam());
    REQUIRE_SERVER(server);
    const std::string address = server.address();
    ASSERT_EQ(server.request("MKCOL", "parts/").status, 201);
    ASSERT_EQ(server.request("PUT", "parts/.wheel", "round").status, 201);
    EXPECT_EQ(server.names("parts"), std::vector<std::string>{".wheel"});

    server.stop();
    EXPECT_EQ(server.request("GET", "parts/.wheel").status, 0);
    server.start();
    EXPECT_EQ(server.content("parts/.wheel"), "round");
    EXPECT_EQ(server.address(), address);
    server.kill();
    EXPECT_TRUE(isGone(address));
}

TEST_P(TestServerTest, TellsALockFromNone)
{
    TestServer server(GetParam());
    REQUIRE_SERVER(server);
    ASSERT_EQ(server.request("PUT", "wheel", "round").status, 201);
    EXPECT_FALSE(server.isLocked("wheel"));
    EXPECT_FALSE(server.isLocked("wheel")) << "asking leaves a lock";
    ASSERT_LT(server
                  .request("LOCK", "wheel",
                           "<lockinfo xmlns='DAV:'><lockscope><exclusive/></lockscope>"
                           "<locktype><write/></locktype></lockinfo>")
                  .status,
              300);
    EXPECT_TRUE(server.isLocked("wheel"));
}

TEST_P(TestServerTest, TakesItsOwnUserAlone)
{
    TestServer server(GetParam());
    REQUIRE_SERVER(server);
    EXPECT_EQ(std::system(("test 401 = $(curl -s --noproxy '*' -o /dev/null -w '%{http_code}' -u ada:wrong " +
                           server.address() + ')')
                              .c_str()),
              0);
}

TEST_P(TestServerTest, EndsWithATestThatIsKilled)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t test = fork();
    if (test == 0) {
        const TestServer server(GetParam());
        const std::string told = server.address() + '\n';
        _exit(write(ends[1], told.data(), told.size()) == ssize_t(told.size()) && pause());
    }
    close(ends[1]);
    std::string address;
    for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';)
        address += c;
    close(ends[0]);
    kill(test, SIGKILL);
    waitpid(test, nullptr, 0);
    if (address == "")
        GTEST_SKIP() << "NOTICE: not installed";
    EXPECT_TRUE(isGone(address));
}

TEST(TestServerOptionsTest, DigestAndTlsAreWhatTheySay)
{
    TestServer digest(TestServer::Kind::Lighttpd, {.digest = true});
    REQUIRE_SERVER(digest);
    EXPECT_NE(digest.request("OPTIONS", "").headers.find("Digest"), std::string::npos);
    TestServer tls(TestServer::Kind::Apache, {.tls = true});
    REQUIRE_SERVER(tls);
    EXPECT_EQ(tls.address().substr(0, 6), "https:");
    EXPECT_EQ(tls.request("PUT", "wheel", "round").status, 201);
}

} // namespace
