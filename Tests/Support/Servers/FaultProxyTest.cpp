// That the proxy does to requests what it was told, and nothing else.

#include "Tests/Support/Servers/FaultProxy.h"

#include "Tests/Support/Servers/TestServer.h"

#include <chrono>
#include <gtest/gtest.h>

namespace {

using TestSupport::Fault;
using TestSupport::FaultProxy;
using TestSupport::TestServer;
using Answer = TestServer::Answer;

constexpr int kPartOfAnAnswer = 18, kTooLate = 28, kNothing = 52, kReset = 56;
constexpr double kSeconds = 2; ///< For an answer that never comes.

class FaultProxyTest : public testing::Test
{
protected:
    /// What curl gets for a PUT through the proxy that meets this fault.
    Answer put(const Fault& fault, const std::string& body)
    {
        m_proxy->onRequest([fault](const FaultProxy::Request&) { return fault; });
        return m_server.requestAt(m_proxy->address() + "wheel", "PUT", body, {}, kSeconds);
    }

    void SetUp() override
    {
        REQUIRE_SERVER(m_server);
        m_proxy = std::make_unique<FaultProxy>(m_server.port());
        ASSERT_EQ(m_server.request("PUT", "wheel", "old").status, 201);
    }

    TestServer m_server{TestServer::Kind::Apache};
    std::unique_ptr<FaultProxy> m_proxy;
};

TEST_F(FaultProxyTest, PassesWhatNoFaultMeetsAndTellsOfIt)
{
    const std::string body(300000, 'x');
    EXPECT_EQ(m_server.requestAt(m_proxy->address() + "a%20b", "PUT", body, {"X-Word: yes"}).status, 201);
    EXPECT_TRUE(m_server.content("a%20b") == body);
    EXPECT_TRUE(m_server.requestAt(m_proxy->address() + "a%20b", "GET").body == body);
    EXPECT_EQ(m_server.requestAt(m_proxy->address() + "a%20b", "HEAD").status, 200);

    const auto requests = m_proxy->requests();
    ASSERT_EQ(requests.size(), 3u);
    EXPECT_EQ(requests[0].target, "/a%20b");
    EXPECT_EQ(requests[0].bodySize, body.size());
    EXPECT_EQ(requests[0].headers.at("x-word"), "yes");
    EXPECT_EQ(requests[2].method, "HEAD");
    EXPECT_EQ(requests[2].number, 3);
    EXPECT_EQ(requests[2].ofMethod, 1);
    m_proxy->forgetRequests();
    EXPECT_TRUE(m_proxy->requests().empty());
}

struct Case
{
    const char* name;
    Fault fault;
    int failure, status;
    const char* kept; ///< What the server has afterwards.
};

TEST_F(FaultProxyTest, DoesToARequestWhatTheFaultSays)
{
    const Case cases[] = {
        {"delay", Fault::delay(0.05), 0, 204, "new"},
        {"reset", Fault::reset(), kReset, 0, "old"},
        {"cut request", Fault::cutRequest(2), kNothing, 0, "old"},
        {"cut headers", Fault::cutAnswer(5), kNothing, 0, "new"},
        {"nothing of the answer", Fault::cutAnswer(0), kNothing, 0, "new"},
        {"lost answer", Fault::loseAnswer(), kReset, 0, "new"},
        {"stall", Fault::stall(), kTooLate, 0, "old"},
        {"stalled answer", Fault::stallAnswer(5), kTooLate, 0, "new"},
        {"answer", Fault::answer(507, "full", {"Retry-After: 1"}), 0, 507, "old"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        ASSERT_LT(m_server.request("PUT", "wheel", "old").status, 300);
        const Answer answer = put(one.fault, "new");
        EXPECT_EQ(answer.failure, one.failure);
        EXPECT_EQ(answer.status, one.status);
        EXPECT_EQ(m_server.content("wheel"), one.kept);
        if (one.status == 507) {
            EXPECT_EQ(answer.body, "full");
            EXPECT_NE(answer.headers.find("Retry-After: 1"), std::string::npos);
        }
    }
}

TEST_F(FaultProxyTest, CutsAnAnswerInItsBody)
{
    m_proxy->onRequest([](const FaultProxy::Request& request) {
        return request.method == "GET" ? std::optional(Fault::cutAnswer(2000)) : std::nullopt;
    });
    ASSERT_LT(m_server.request("PUT", "wheel", std::string(5000, 'x')).status, 300);
    const Answer answer = m_server.requestAt(m_proxy->address() + "wheel", "GET");
    EXPECT_EQ(answer.failure, kPartOfAnAnswer);
    EXPECT_EQ(answer.headers.size() + answer.body.size(), 2000u);
}

TEST_F(FaultProxyTest, AnswersWithoutEndUntilTheClientHasEnough)
{
    m_proxy->onRequest([](const FaultProxy::Request&) {
        Fault fault = Fault::answer(207);
        fault.pieces = [] { return std::string(10000, ' '); };
        return std::optional(fault);
    });
    EXPECT_EQ(m_server.requestAt(m_proxy->address(), "PROPFIND", {}, {}, 0.3).failure, kTooLate);
}

} // namespace
