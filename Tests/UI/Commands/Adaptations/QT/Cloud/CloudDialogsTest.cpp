#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/Skyvault/CloudOptionGroup.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "Tests/Support/Servers/TestServer.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Window/PreferencesDialog.h"
#include "UI/Commands/Adaptations/QT/Cloud/QTCloudDialog.h"
#include "UI/Commands/Adaptations/QT/Cloud/QTCloudLoginDialog.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QtTest/QTest>

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

using namespace Vu::Commands;
using TestSupport::TestServer;

namespace {

/// The dialogs against a real server, driven by events.
class CloudDialogsTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        Vu::Application::get()->needGui();
    }
    void TearDown() override
    {
        std::ignore = auth().logout();
        WithProgram::TearDown();
    }

    static Vs::MeshportAuth& auth() { return *Vs::MeshportAuth::globalInstance(); }
    static void signIn(const TestServer& server)
    {
        Vs::Cloud::DriveCredentials credentials;
        credentials.kind = Vs::Cloud::DriveCredentials::Kind::Password;
        credentials.user = server.user();
        credentials.secret = server.password();
        const auto result = auth().signIn(server.address(), credentials, false);
        ASSERT_TRUE(result.isOk()) << result.detail;
    }
    static void put(const TestServer& server, const std::string& path, const std::string& content = "x")
    {
        const boost::filesystem::path file = server.folder() / path;
        boost::filesystem::create_directories(file.parent_path());
        boost::filesystem::ofstream(file) << content;
    }

    template <class Widget>
    static Widget* part(const QWidget& dialog, const char* name)
    {
        auto* found = dialog.findChild<Widget*>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    static std::string message(const QWidget& dialog)
    {
        const auto* label = part<QLabel>(dialog, "cloudMessage");
        return label->isVisible() ? label->text().toStdString() : std::string();
    }
    static void type(QLineEdit* field, const std::string& text)
    {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, QString::fromStdString(text));
    }
    static std::vector<std::string> names(const QTreeView& list)
    {
        std::vector<std::string> names;
        for (int row = 0; row < list.model()->rowCount(); ++row)
            names.push_back(list.model()->index(row, 0).data().toString().toStdString());
        return names;
    }
};

} // namespace

TEST_F(CloudDialogsTest, SignInFindsTheDriveTellsWhatIsWrongAndEndsWhenSomebodyIsSignedIn)
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

TEST_F(CloudDialogsTest, AnotherAddressAsksForItsOwnWaysAgain)
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

TEST_F(CloudDialogsTest, ADocumentIsFoundByKeysAloneThroughFoldersAndHostileNames)
{
    const TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    put(server, "parts/wheel 10.vlra", std::string(2048, 'x'));
    put(server, "parts/wheel 2.vlra");
    put(server, "parts/deep/axle.vlra");
    put(server, "parts/notes.txt");
    put(server, "<b>bold<img src=x>.vlra");
    signIn(server);
    QTCloudDialog dialog({CloudDialog::Kind::Document, L"Designs (*.vlra);;Texts (*.txt)"}, {}, nullptr);
    dialog.show();
    auto* list = part<QTreeView>(dialog, "cloudList");
    ASSERT_TRUE(QTest::qWaitFor([&] { return list->model()->rowCount() > 0; })) << message(dialog);
    EXPECT_EQ(names(*list), (std::vector<std::string>{"parts", "<b>bold<img src=x>.vlra"}));
    EXPECT_FALSE(list->model()->index(1, 0).data(Qt::ToolTipRole).toString().contains("<img"));

    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(names(*list), (std::vector<std::string>{"deep", "wheel 2.vlra", "wheel 10.vlra"}));
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(names(*list), std::vector<std::string>{"axle.vlra"});
    QTest::keyClick(list, Qt::Key_Backspace);
    EXPECT_EQ(list->currentIndex().data().toString().toStdString(), "deep") << "where one came from";
    type(part<QLineEdit>(dialog, "cloudSearch"), "10");
    EXPECT_EQ(names(*list), std::vector<std::string>{"wheel 10.vlra"});
    QTest::keyClick(part<QLineEdit>(dialog, "cloudSearch"), Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << "who searches has not chosen yet";
    EXPECT_EQ(QApplication::focusWidget(), list);
    part<QLineEdit>(dialog, "cloudSearch")->clear();
    QTest::keyClick(part<QComboBox>(dialog, "cloudFilter"), Qt::Key_Down);
    EXPECT_EQ(names(*list), (std::vector<std::string>{"deep", "notes.txt"}));
    QTest::keyClick(part<QComboBox>(dialog, "cloudFilter"), Qt::Key_Up);

    // What another puts there shows when the folder is read again.
    put(server, "parts/new.vlra");
    QTest::mouseClick(part<QToolButton>(dialog, "cloudRefresh"), Qt::LeftButton);
    EXPECT_EQ(list->model()->rowCount(), 4);
    list->setCurrentIndex(list->model()->index(3, 0));
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.node().id(), "/parts/wheel 10.vlra");
    EXPECT_EQ(dialog.node().size(), 2048u);
}

TEST_F(CloudDialogsTest, ANameIsTakenWhereItCanBeOneAndAFolderWithWhatIsInIt)
{
    const TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    put(server, "parts/wheel.vlra");
    signIn(server);
    QTCloudDialog dialog({CloudDialog::Kind::SaveAs, L"Designs (*.vlra)", L".vlra"}, "Untitled", nullptr);
    dialog.show();
    auto* list = part<QTreeView>(dialog, "cloudList");
    auto* name = part<QLineEdit>(dialog, "cloudName");
    ASSERT_TRUE(dialog.open("/parts")) << message(dialog);
    EXPECT_EQ(name->text(), QStringLiteral("Untitled"));
    for (const char* wrong : {"../up", "a\\b", ".."}) {
        type(name, wrong);
        QTest::keyClick(name, Qt::Key_Return);
        EXPECT_NE(message(dialog), "") << wrong;
        EXPECT_TRUE(dialog.isVisible()) << wrong;
    }
    list->setCurrentIndex(list->model()->index(0, 0));
    EXPECT_EQ(name->text(), QStringLiteral("wheel.vlra")) << "to replace that one";
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.node().id(), "/parts");
    EXPECT_NE(dialog.node().findChild("wheel.vlra"), nullptr);
    EXPECT_EQ(dialog.name(), QStringLiteral("wheel.vlra"));

    QTCloudDialog folder({CloudDialog::Kind::Folder}, {}, nullptr);
    folder.show();
    ASSERT_TRUE(folder.open("/"));
    QTimer::singleShot(0, qApp, [] {
        QWidget* asking = QApplication::activeModalWidget();
        ASSERT_NE(asking, nullptr);
        auto* field = asking->findChild<QLineEdit*>();
        QTest::keyClicks(field, QStringLiteral("a & b/"));
        EXPECT_FALSE(asking->findChild<QPushButton*>()->isEnabled());
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClick(field, Qt::Key_Return);
    });
    QTest::mouseClick(part<QToolButton>(folder, "cloudNewFolder"), Qt::LeftButton);
    EXPECT_TRUE(boost::filesystem::is_directory(server.folder() / "a & b"));
    QTest::mouseClick(part<QPushButton>(folder, "cloudChoose"), Qt::LeftButton);
    EXPECT_EQ(folder.result(), QDialog::Accepted);
    EXPECT_EQ(folder.node().id(), "/a & b");
}

TEST_F(CloudDialogsTest, TenThousandEntriesAreListedInOrderAndADriveThatIsGoneIsTold)
{
    TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    constexpr int kMany = 10000;
    for (int i = 0; i < kMany; ++i)
        put(server, "many/part " + std::to_string(i) + ".vlra", {});
    signIn(server);
    QTCloudDialog dialog({CloudDialog::Kind::Document, L"Designs (*.vlra)"}, {}, nullptr);
    dialog.show();
    auto* list = part<QTreeView>(dialog, "cloudList");
    ASSERT_TRUE(dialog.open("/many")) << message(dialog);
    ASSERT_EQ(list->model()->rowCount(), kMany);
    EXPECT_EQ(list->model()->index(kMany - 1, 0).data().toString().toStdString(), "part 9999.vlra");
    list->sortByColumn(0, Qt::DescendingOrder);
    EXPECT_EQ(list->model()->index(kMany - 1, 0).data().toString().toStdString(), "part 0.vlra");

    const auto* whose = part<QLabel>(dialog, "cloudWhose");
    const QString before = whose->text();
    EXPECT_TRUE(before.contains(QString::fromStdString(server.user()))) << before.toStdString();
    server.stop();
    EXPECT_FALSE(dialog.open("/"));
    EXPECT_NE(message(dialog), "");
    EXPECT_TRUE(whose->text().contains("cannot be reached")) << whose->text().toStdString();
    EXPECT_EQ(list->model()->rowCount(), kMany) << "what was there stays";
    server.start();
    EXPECT_TRUE(dialog.open("/")) << message(dialog);
    EXPECT_EQ(message(dialog), "");
    EXPECT_EQ(whose->text(), before);
}

TEST_F(CloudDialogsTest, WhatIsSentFromThePreferencesIsToldWhileTheyAreOpenAndNotBeforeItHasArrived)
{
    TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    signIn(server);
    const auto file = Vs::SkyvaultUtilities::currentCachePath(&auth()) / "wheel.vlra";
    answer(L"Design.New");
    server.stop();
    answer(L"VuCommands.CloudSaveCmd " + Vs::Strings::quote(file.wstring()));
    // As a click on their button opens them, in a task that lasts until they are closed.
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

TEST_F(CloudDialogsTest, ThePageOfThePreferencesTellsWhoIsSignedInAndWhatTheServerDoes)
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
