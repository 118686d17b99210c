#include "Server/Skyvault/Client/Transport.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/TestServer.h"

#include <QCoreApplication>

#include <gtest/gtest.h>
#include <memory>

using namespace Vs;
using namespace Vs::Cloud;
using TestSupport::TestServer;

namespace {

/// Qt's threads have no events without it.
class Application : public testing::Environment
{
public:
    void SetUp() override { m_application = std::make_unique<QCoreApplication>(m_count, nullptr); }
    void TearDown() override { m_application.reset(); }

private:
    int m_count = 0;
    std::unique_ptr<QCoreApplication> m_application;
};

const auto* const s_application = testing::AddGlobalTestEnvironment(new Application);

} // namespace

TEST(SignInTest, ACertificateThatNobodySignedIsRefusedWithItsFingerprint)
{
    TestServer server(TestServer::Kind::Apache, {.tls = true});
    REQUIRE_SERVER(server);
    DriveOffer offer;
    const DriveResult result = quilletDriveTransport()->discover(server.address(), offer);
    EXPECT_EQ(result.state, CloudErrorState::Certificate);
    const auto print =
        TestSupport::runProcess("/usr/bin/openssl", {"x509", "-in", server.certificate().string(), "-noout",
                                                     "-fingerprint", "-sha256"});
    const std::string fingerprint = print.output.substr(print.output.find('=') + 1, 95);
    EXPECT_NE(result.detail.find(fingerprint), std::string::npos) << result.detail << "\n" << print.output;
}
