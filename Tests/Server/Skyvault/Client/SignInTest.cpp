#include "Server/Skyvault/Client/Transport.h"
#include "Tests/Server/Skyvault/Client/ScriptedServer.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/TestServer.h"

#include <QCoreApplication>
#include <QUrl>
#include <QUrlQuery>

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

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

/// A user's browser, whose requests run while the client waits.
class Browser
{
public:
    ~Browser() { statuses(); }
    /// Requests the address by curl with these arguments, after the address that `before` makes from it.
    std::function<bool(const std::string&)> open(std::vector<std::string> arguments,
                                                 std::function<QUrl(QUrlQuery)> before = {})
    {
        return [=, this](const std::string& address) {
            m_page = QUrlQuery(QUrl(QString::fromStdString(address)));
            m_thread = std::thread([=, this] {
                if (before)
                    ask({}, before(m_page).toString(QUrl::FullyEncoded).toStdString());
                ask(arguments, address);
            });
            return true;
        };
    }
    std::string value(const char* name) const
    {
        return m_page.queryItemValue(name, QUrl::FullyDecoded).toStdString();
    }
    /// Of all its requests.
    std::string statuses()
    {
        if (m_thread.joinable())
            m_thread.join();
        return m_statuses;
    }

private:
    void ask(std::vector<std::string> arguments, const std::string& address)
    {
        arguments.insert(arguments.end(), {"-s", "-m", "10", "--noproxy", "*", "-o", "/dev/null", "-w",
                                           "%{http_code} ", address});
        m_statuses += TestSupport::runProcess("/usr/bin/curl", arguments).output;
    }

    QUrlQuery m_page;
    std::thread m_thread;
    std::string m_statuses;
};

/// Gives up after that many tenths of a second.
DriveWatch patient(int ticks = 100)
{
    return {[ticks](auto, auto) mutable { return --ticks > 0; }};
}

DriveOffer offerOf(const std::string& address)
{
    DriveOffer offer;
    const DriveResult result = quilletDriveTransport()->discover(address, offer);
    EXPECT_TRUE(result.isOk()) << result.detail;
    return offer;
}

DriveResult signIn(const DriveOffer& offer, const std::function<bool(const std::string&)>& open,
                   DriveCredentials& credentials, const DriveWatch& watch = patient())
{
    return quilletDriveTransport()->signInByBrowser(offer, open, credentials, watch);
}

CloudErrorState find(Drive& drive)
{
    DriveEntry entry;
    return drive.find("/", entry).state;
}

/// Whether something becomes true in time.
bool comes(const std::function<bool()>& condition)
{
    for (int tenths = 200; tenths > 0; --tenths) {
        if (condition())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
}

} // namespace

TEST(SignInTest, TheLoginFlowGivesAPasswordThatTheDriveTakes)
{
    ScriptedServer server("sign_in.py");
    const DriveOffer offer = offerOf(server.address());
    EXPECT_TRUE(offer.browserFlow);
    EXPECT_TRUE(offer.password);
    EXPECT_FALSE(offer.oauth2);
    EXPECT_EQ(offer.address, server.address() + "remote.php/webdav");

    DriveCredentials credentials;
    Browser browser;
    const DriveResult result = signIn(offer, browser.open({"-X", "POST"}), credentials);
    ASSERT_TRUE(result.isOk()) << result.detail;
    EXPECT_EQ(browser.statuses(), "200 ");
    EXPECT_EQ(credentials.kind, DriveCredentials::Kind::Password);
    EXPECT_EQ(credentials.user, "ada");
    EXPECT_EQ(find(*quilletDriveTransport()->drive(offer.address, credentials)), CloudErrorState::Success);
    credentials.secret += 'x';
    EXPECT_EQ(find(*quilletDriveTransport()->drive(offer.address, credentials)),
              CloudErrorState::Unauthorized);
}

TEST(SignInTest, ATokenIsGotByTheBrowserAndRenewedUntilTheServerRefuses)
{
    ScriptedServer server("sign_in.py");
    const DriveOffer offer = offerOf(server.address() + "dav");
    EXPECT_TRUE(offer.oauth2);
    EXPECT_FALSE(offer.password);
    EXPECT_FALSE(offer.browserFlow);

    DriveCredentials credentials;
    Browser browser;
    // Another page of the browser tries first, and doesn't know the state.
    const auto guess = [](const QUrlQuery& page) {
        return QUrl(page.queryItemValue("redirect_uri", QUrl::FullyDecoded) + "?code=evil&state=guessed");
    };
    const DriveResult result = signIn(offer, browser.open({"-L"}, guess), credentials);
    ASSERT_TRUE(result.isOk()) << result.detail;
    EXPECT_EQ(browser.statuses(), "400 200 ");
    EXPECT_EQ(browser.value("redirect_uri").rfind("http://127.0.0.1:", 0), 0U);
    EXPECT_EQ(credentials.kind, DriveCredentials::Kind::Bearer);

    const auto drive = quilletDriveTransport()->drive(offer.address, credentials);
    EXPECT_EQ(find(*drive), CloudErrorState::Success);
    for (int renewal = 0; renewal < 2; ++renewal) {
        server.order("expire");
        EXPECT_EQ(find(*drive), CloudErrorState::Success);
    }
    const DriveCredentials renewed = drive->credentials();
    EXPECT_NE(renewed.secret, credentials.secret);
    EXPECT_NE(renewed.refreshToken, credentials.refreshToken);
    server.order("expire");
    server.order("revoke");
    EXPECT_EQ(find(*drive), CloudErrorState::Unauthorized);
    EXPECT_EQ(drive->credentials().refreshToken, renewed.refreshToken);
}

TEST(SignInTest, OneThatThePersonOrTheServerEndsGivesNoCredentials)
{
    const auto shows = [](auto&) { return true; };
    const auto cannotShow = [](auto&) { return false; };
    for (const std::string folder : {"", "dav"}) { // A login flow, and OAuth.
        SCOPED_TRACE(folder);
        ScriptedServer server("sign_in.py");
        const DriveOffer offer = offerOf(server.address() + folder);
        EXPECT_EQ(offer.oauth2, !folder.empty());
        DriveCredentials credentials;
        EXPECT_EQ(signIn(offer, shows, credentials, patient(20)).state, CloudErrorState::Cancelled);
        EXPECT_EQ(signIn(offer, cannotShow, credentials).state, CloudErrorState::LoginFailed);
        server.order("refuse");
        Browser browser;
        const DriveResult refused = offer.oauth2 ? signIn(offer, browser.open({"-L"}), credentials)
                                                 : signIn(offer, shows, credentials);
        EXPECT_EQ(refused.state, offer.oauth2 ? CloudErrorState::LoginFailed : CloudErrorState::Forbidden);
        const char* why = offer.oauth2 ? "access_denied" : "Signing in at 127.0.0.1";
        EXPECT_NE(refused.detail.find(why), std::string::npos) << refused.detail;
        EXPECT_EQ(credentials.kind, DriveCredentials::Kind::None);
    }
}

TEST(SignInTest, NoCodeIsGivenToAnotherServerAndNoneIsSentUnprotected)
{
    ScriptedServer server("sign_in.py");
    const DriveOffer offer = offerOf(server.address() + "dav");
    DriveCredentials credentials;
    server.order("pretend");
    Browser browser;
    const DriveResult pretended = signIn(offer, browser.open({"-L"}), credentials);
    EXPECT_EQ(pretended.state, CloudErrorState::LoginFailed);
    EXPECT_NE(pretended.detail.find("another server"), std::string::npos) << pretended.detail;

    server.order("expose");
    bool isOpened = false;
    const auto open = [&](auto&) { return isOpened = true; };
    EXPECT_EQ(signIn(offer, open, credentials).state, CloudErrorState::BadAnswer);
    EXPECT_FALSE(isOpened);
    DriveOffer exposed;
    EXPECT_EQ(quilletDriveTransport()->discover(server.address() + "dav", exposed).state,
              CloudErrorState::Unsupported);
    EXPECT_EQ(credentials.kind, DriveCredentials::Kind::None);
}

TEST(SignInTest, ARealTokenServersTokensAreTakenAndRenewedUntilTheyAreRevoked)
{
    ScriptedServer server("token_drive.py");
    REQUIRE_SERVER(server);
    const DriveOffer offer = offerOf(server.address());
    EXPECT_TRUE(offer.oauth2);
    EXPECT_FALSE(offer.password);
    const auto person = [&](const char* order) {
        return [&server, order](const std::string& page) {
            server.order(order + page);
            return true;
        };
    };
    DriveCredentials forged;
    const DriveResult refused = signIn(offer, person("sign-in-forged "), forged, patient(300));
    EXPECT_EQ(refused.state, CloudErrorState::LoginFailed);
    EXPECT_NE(refused.detail.find("another server"), std::string::npos) << refused.detail;
    EXPECT_EQ(forged.kind, DriveCredentials::Kind::None);

    server.order("brief"); // So short that nothing below relies on such a token being accepted.
    DriveCredentials credentials;
    const DriveResult result = signIn(offer, person("sign-in "), credentials, patient(300));
    ASSERT_TRUE(result.isOk()) << result.detail;
    DriveCredentials brief = credentials;
    brief.refreshToken.clear();
    const auto unrenewed = quilletDriveTransport()->drive(offer.address, brief);
    EXPECT_TRUE(comes([&] { return find(*unrenewed) == CloudErrorState::Unauthorized; }));
    server.order("lasting");
    const auto drive = quilletDriveTransport()->drive(offer.address, credentials);
    EXPECT_EQ(find(*drive), CloudErrorState::Success);
    EXPECT_NE(drive->credentials().secret, credentials.secret);

    // A drive whose refresh token is revoked keeps its access token as long as that is valid.
    DriveCredentials last = drive->credentials();
    last.secret = credentials.secret;
    server.order("revoke");
    EXPECT_EQ(find(*drive), CloudErrorState::Success);
    EXPECT_EQ(find(*quilletDriveTransport()->drive(offer.address, last)), CloudErrorState::Unauthorized);

    server.order("misname");
    DriveOffer misnamed;
    EXPECT_EQ(quilletDriveTransport()->discover(server.address(), misnamed).state,
              CloudErrorState::Unsupported);
}

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
