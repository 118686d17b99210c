#include "Server/Base/Task.h"
#include "Server/Skyvault/CloudOptionGroup.h"
#include "Tests/Support/Servers/FaultProxy.h"
#include "Tests/UI/Commands/Adaptations/QT/Cloud/WithCloudDialogs.h"
#include "UI/Base/Window/PreferencesDialog.h"
#include "UI/Commands/Adaptations/QT/Cloud/QTCloudLoginDialog.h"

using namespace Vu::Commands;
using TestSupport::TestServer;

namespace {

using CloudLoginDialogTest = CommandsTests::WithCloudDialogs;

} // namespace

TEST_F(CloudLoginDialogTest, SignInFindsTheDriveTellsWhatIsWrongAndEndsWhenSomebodyIsSignedIn)
{
    const TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    QTCloudLoginDialog dialog(nullptr);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto* address = part<QLineEdit>(dialog, "cloudAddress");
    auto* user = part<QLineEdit>(dialog, "cloudUser");
    auto* password = part<QLineEdit>(dialog, "cloudPassword");
    auto* proceed = part<QPushButton>(dialog, "cloudProceed");
    EXPECT_EQ(QApplication::focusWidget(), address);
    EXPECT_FALSE(user->isVisible()) << "no server is known yet";

    type(address, "http://127.0.0.1:1/");
    QTest::keyClick(address, Qt::Key_Return);
    EXPECT_NE(message(dialog), "");
    EXPECT_FALSE(user->isVisible());
    type(address, "http://192.0.2.1/");
    QTest::keyClick(address, Qt::Key_Return);
    EXPECT_NE(message(dialog).find("https://"), std::string::npos) << message(dialog);

    type(address, server.address());
    EXPECT_EQ(message(dialog), "") << "that was about another address";
    QTest::keyClick(address, Qt::Key_Return);
    ASSERT_TRUE(user->isVisible()) << message(dialog);
    EXPECT_FALSE(part<QPushButton>(dialog, "cloudBrowser")->isVisible()) << "this server has no page for it";
    EXPECT_FALSE(proceed->isEnabled()) << "a password is needed";

    type(user, server.user());
    type(password, "not " + server.password());
    part<QCheckBox>(dialog, "cloudKeep")->setChecked(false);
    QTest::keyClick(password, Qt::Key_Return);
    EXPECT_NE(message(dialog).find("password"), std::string::npos) << message(dialog);
    EXPECT_FALSE(auth().isLoggedIn());
    EXPECT_EQ(QApplication::focusWidget(), password);

    type(password, server.password());
    QTest::keyClick(password, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted) << message(dialog);
    EXPECT_TRUE(auth().isLoggedIn());
    EXPECT_FALSE(auth().isKept());

    QTCloudLoginDialog again(nullptr);
    again.show();
    EXPECT_EQ(part<QLineEdit>(again, "cloudAddress")->text().toStdString(),
              QString::fromStdWString(Vs::CloudOptionGroup::get()->server()).toStdString());
    EXPECT_EQ(part<QLineEdit>(again, "cloudPassword")->text(), QString());
    QTest::keyClick(&again, Qt::Key_Escape);
    EXPECT_FALSE(again.isVisible());
}

TEST_F(CloudLoginDialogTest, AnotherAddressAsksForItsOwnWaysAgain)
{
    const TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    QTCloudLoginDialog dialog(nullptr);
    dialog.show();
    auto* address = part<QLineEdit>(dialog, "cloudAddress");
    type(address, server.address());
    QTest::mouseClick(part<QPushButton>(dialog, "cloudProceed"), Qt::LeftButton);
    ASSERT_TRUE(part<QLineEdit>(dialog, "cloudUser")->isVisible()) << message(dialog);
    type(address, "other.example");
    EXPECT_FALSE(part<QLineEdit>(dialog, "cloudUser")->isVisible());
    type(address, "");
    address->clear();
    EXPECT_FALSE(part<QPushButton>(dialog, "cloudProceed")->isEnabled());
}

TEST_F(CloudLoginDialogTest, AServerThatKeepsNobodyFromWritingOverAnotherIsToldBeforeTheSignInIsOver)
{
    const TestServer server(TestServer::Kind::Rclone); // It never rejects stale requests.
    REQUIRE_SERVER(server);
    TestSupport::FaultProxy proxy(server.port());
    proxy.onRequest([](const TestSupport::FaultProxy::Request& request) {
        return request.method == "LOCK" ? std::optional(TestSupport::Fault::answer(405)) : std::nullopt;
    });
    QTCloudLoginDialog dialog(nullptr);
    dialog.show();
    auto* address = part<QLineEdit>(dialog, "cloudAddress");
    type(address, proxy.address());
    QTest::keyClick(address, Qt::Key_Return);
    ASSERT_TRUE(part<QLineEdit>(dialog, "cloudUser")->isVisible()) << message(dialog);
    type(part<QLineEdit>(dialog, "cloudUser"), server.user());
    type(part<QLineEdit>(dialog, "cloudPassword"), server.password());
    part<QCheckBox>(dialog, "cloudKeep")->setChecked(false);
    QTest::keyClick(part<QLineEdit>(dialog, "cloudPassword"), Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_NE(message(dialog).find("cannot lock files"), std::string::npos) << message(dialog);
    QTest::mouseClick(part<QPushButton>(dialog, "cloudProceed"), Qt::LeftButton);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(auth().isLoggedIn());
}

TEST_F(CloudLoginDialogTest, WhatIsSentFromThePreferencesIsToldWhileTheyAreOpenAndNotBeforeItHasArrived)
{
    TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    signIn(server);
    const auto file = Vs::SkyvaultUtilities::currentCachePath(&auth()) / "wheel.vlra";
    answer(L"Design.New");
    server.stop();
    answer(L"VuCommands.CloudSaveCmd " + Vs::Strings::quote(file.wstring()));
    // Opened as by a click on their button, in a task that lasts until they are closed.
    Vu::Application::get()->deferredTasks()->post([&] {
        Vu::PreferencesDialog dialog(nullptr);
        dialog.show();
        const auto* waiting = part<QLabel>(dialog, "cloudWaiting");
        auto* send = part<QPushButton>(dialog, "cloudSend");
        const auto says = [&](const char* text) { return waiting->text().contains(QLatin1String(text)); };
        EXPECT_EQ(waiting->text(), QStringLiteral("wheel.vlra"));
        for (const bool isBack : {false, true}) {
            if (isBack)
                server.start();
            QTest::mouseClick(send, Qt::LeftButton);
            EXPECT_TRUE(says("wheel.vlra (being sent)")) << waiting->text().toStdString();
            EXPECT_TRUE(QTest::qWaitFor([&] { return !says("being sent"); }, 30'000));
            EXPECT_EQ(says("wheel.vlra"), !isBack) << waiting->text().toStdString();
            EXPECT_EQ(server.content("wheel.vlra").has_value(), isBack);
        }
        QTest::mouseClick(part<QPushButton>(dialog, "cloudSign"), Qt::LeftButton);
        EXPECT_FALSE(auth().isLoggedIn());
    });
    Vu::Application::get()->flushDeferredTasks();
}

TEST_F(CloudLoginDialogTest, ThePageOfThePreferencesTellsWhoIsSignedInAndWhatTheServerDoes)
{
    const TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    Vu::PreferencesDialog dialog(nullptr);
    dialog.show();
    auto* account = part<QLabel>(dialog, "cloudAccount");
    auto* traits = part<QLabel>(dialog, "cloudTraits");
    EXPECT_FALSE(traits->isVisible());
    signIn(server);
    EXPECT_NE(account->text().indexOf(QString::fromStdString(server.address())), -1)
        << account->text().toStdString();
    EXPECT_NE(account->text().indexOf(QString::fromStdString(server.user())), -1);
    EXPECT_EQ(account->text().indexOf(QString::fromStdString(server.password())), -1);
    EXPECT_TRUE(traits->isVisible());
    QTest::mouseClick(part<QCheckBox>(dialog, "cloudOn"), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_TRUE(auth().cloudDisabled());
    EXPECT_FALSE(account->isVisible()) << "there is nothing to tell of a drive that is off";
    QTest::mouseClick(part<QCheckBox>(dialog, "cloudOn"), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_FALSE(auth().cloudDisabled());
    EXPECT_TRUE(account->isVisible());
}
