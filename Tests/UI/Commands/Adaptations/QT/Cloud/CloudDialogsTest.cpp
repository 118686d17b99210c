#include "Server/Base/Progress.h"
#include "Server/DataModel/Document.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Tests/Support/Servers/FaultProxy.h"
#include "Tests/UI/Commands/Adaptations/QT/Cloud/WithCloudDialogs.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceEvents.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Adaptations/QT/Cloud/QTCloudDialog.h"

#include <QComboBox>
#include <QTimer>
#include <QToolButton>

#include <atomic>
#include <thread>

using namespace Vu::Commands;
using TestSupport::TestServer;

namespace {

/// Against a real server, driven by events.
using CloudDialogsTest = CommandsTests::WithCloudDialogs;

} // namespace

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
    ASSERT_TRUE(dialog.open("/")) << "a dialog before may have chosen elsewhere: " << message(dialog);
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

    // Changes made by others appear when the folder is read again.
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

TEST_F(CloudDialogsTest, TenThousandEntriesAreListedInOrder)
{
    const TestServer server(TestServer::Kind::Lighttpd);
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
}

TEST_F(CloudDialogsTest, WhileTheDriveIsAwayWhatThisComputerHasIsListedAndOpens)
{
    TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    signIn(server);
    const auto root = Vs::SkyvaultUtilities::currentCachePath(&auth());
    for (const char* id : {"parts/deep/axle.vlra", "parts/wheel.vlra", "parts/gone.vlra"}) {
        answer(L"Design.New");
        answer(L"VuCommands.CloudSaveCmd " + Vs::Strings::quote((root / id).wstring()));
    }
    answer(L"Document.CloseAll");
    EXPECT_EQ(server.names("parts"), (std::vector<std::string>{"deep", "gone.vlra", "wheel.vlra"}));
    put(server, "parts/deep/elsewhere.vlra");
    put(server, "none/elsewhere.vlra");
    boost::filesystem::remove(root / "parts/gone.vlra");
    QTCloudDialog dialog({CloudDialog::Kind::Document, L"Designs (*.vlra)"}, {}, nullptr);
    dialog.show();
    auto* list = part<QTreeView>(dialog, "cloudList");
    ASSERT_TRUE(dialog.open("/")) << message(dialog);
    EXPECT_EQ(names(*list), (std::vector<std::string>{"none", "parts"}));
    EXPECT_EQ(message(dialog), "");
    const auto* whose = part<QLabel>(dialog, "cloudWhose");
    const QString before = whose->text();
    EXPECT_TRUE(before.contains(QString::fromStdString(server.user()))) << before.toStdString();

    server.stop();
    EXPECT_TRUE(dialog.open("/"));
    EXPECT_EQ(names(*list), std::vector<std::string>{"parts"});
    EXPECT_NE(message(dialog).find("on this computer"), std::string::npos) << message(dialog);
    EXPECT_TRUE(whose->text().contains("cannot be reached")) << whose->text().toStdString();
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(names(*list), (std::vector<std::string>{"deep", "wheel.vlra"}));
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(names(*list), std::vector<std::string>{"axle.vlra"});
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    CloudDialog::responder([&](const auto&, Vs::SkyvaultNodeData& node, std::wstring&) {
        node = dialog.node();
        return true;
    });
    answer(L"VuCommands.CloudOpenDocumentCmd");
    CloudDialog::responder(nullptr);
    ASSERT_NE(activeDocument(), nullptr);
    EXPECT_EQ(activeDocument()->cloudId(), "/parts/deep/axle.vlra");

    // A place for what is saved meanwhile is chosen among all known ones.
    QTCloudDialog saving({CloudDialog::Kind::SaveAs, L"Designs (*.vlra)", L".vlra"}, "new", nullptr);
    saving.show();
    ASSERT_TRUE(saving.open("/parts"));
    EXPECT_EQ(names(*part<QTreeView>(saving, "cloudList")),
              (std::vector<std::string>{"deep", "gone.vlra", "wheel.vlra"}));
    EXPECT_NE(message(saving).find("waits"), std::string::npos) << message(saving);
    type(part<QLineEdit>(saving, "cloudName"), "other");
    EXPECT_NE(message(saving), "") << "typing doesn't bring the drive back";

    server.start();
    EXPECT_TRUE(saving.open("/")) << message(saving);
    EXPECT_EQ(names(*part<QTreeView>(saving, "cloudList")), (std::vector<std::string>{"none", "parts"}));
    EXPECT_EQ(message(saving), "");
    EXPECT_EQ(whose->text(), before);
}

TEST_F(CloudDialogsTest, WhoDoesNotWaitForTheFirstFolderIsShownWhatThisComputerHas)
{
    const TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    TestSupport::FaultProxy proxy(server.port());
    signIn(server, proxy.address());
    const auto root = Vs::SkyvaultUtilities::currentCachePath(&auth());
    answer(L"Design.New");
    answer(L"VuCommands.CloudSaveCmd " + Vs::Strings::quote((root / "wheel.vlra").wstring()));
    put(server, "other.vlra");
    QTCloudDialog dialog({CloudDialog::Kind::Document, L"Designs (*.vlra)"}, {}, nullptr);
    dialog.show();
    auto* list = part<QTreeView>(dialog, "cloudList");
    const auto openWithoutWaiting = [&] {
        std::atomic<bool> isAsked = false;
        proxy.onRequest([&](const auto&) {
            isAsked = true;
            return std::optional(TestSupport::Fault::stall());
        });
        std::thread person([&] {
            while (!isAsked)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            Vs::Progress::requestCancel(); // As the dialog's button does.
        });
        const bool isOpen = dialog.open("/");
        person.join();
        proxy.onRequest({});
        return isOpen;
    };
    EXPECT_TRUE(openWithoutWaiting());
    EXPECT_EQ(names(*list), std::vector<std::string>{"wheel.vlra"});
    EXPECT_NE(message(dialog).find("not reached"), std::string::npos) << message(dialog);
    EXPECT_TRUE(dialog.open("/")) << message(dialog);
    EXPECT_EQ(names(*list), (std::vector<std::string>{"other.vlra", "wheel.vlra"}));
    EXPECT_FALSE(openWithoutWaiting());
    EXPECT_EQ(list->model()->rowCount(), 2) << "what was there stays";
    EXPECT_EQ(message(dialog), "");
}

TEST_F(CloudDialogsTest, ADocumentsTitleTellsThatItWaitsOrThatAnotherHasChangedOrRemovedIt)
{
    TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    signIn(server);
    const auto file = Vs::SkyvaultUtilities::currentCachePath(&auth()) / "wheel.vlra";
    answer(L"Design.New");
    const auto remark = [document = activeDocument()] {
        return Vs::Strings::narrow(Vu::DocumentRemark::of(*document));
    };
    const auto becomes = [&](const std::string& wanted) {
        return QTest::qWaitFor([&] { return remark() == wanted; }, 30'000);
    };
    EXPECT_EQ(remark(), "");
    server.stop();
    answer(L"VuCommands.CloudSaveCmd " + Vs::Strings::quote(file.wstring()));
    EXPECT_EQ(remark(), "waiting for the drive");
    server.start();
    Vs::CloudCacheManager::getInstance()->uploadWaiting();
    EXPECT_TRUE(becomes("")) << remark();
    ASSERT_EQ(server.request("PUT", "wheel.vlra", "another's").status, 204);
    Vs::CloudCacheManager::getInstance()->refresh({file});
    EXPECT_TRUE(becomes("changed by somebody else")) << remark();
    ASSERT_EQ(server.request("DELETE", "wheel.vlra").status, 204);
    // Its home screen asks for all of its files.
    Vu::Workspace* workspace = Vu::WorkspaceMgr::get()->create();
    workspace->window()->show();
    Vu::WorkspaceEvent welcome(workspace);
    Vu::WorkspaceEventSource::get()->fireWorkspaceWelcome(&welcome);
    EXPECT_TRUE(becomes("removed from the drive")) << remark();
    Vu::WorkspaceMgr::get()->close(workspace);
    EXPECT_TRUE(Vu::FilePlace::of(file.wstring())->isGone);
    ASSERT_EQ(server.request("PUT", "wheel.vlra", "again").status, 201);
    Vs::CloudCacheManager::getInstance()->refresh({file});
    EXPECT_TRUE(becomes("changed by somebody else")) << remark();
    EXPECT_FALSE(Vu::FilePlace::of(file.wstring())->isGone);
}
