#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/RecentPaths.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/WorkspaceEvents.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Adaptations/QT/Shell/FilePictures.h"
#include "UI/Commands/Adaptations/QT/Shell/FilePreview.h"
#include "UI/Commands/Adaptations/QT/Shell/Tile.h"
#include "UI/Commands/Adaptations/QT/Shell/TileSection.h"
#include "UI/Commands/Adaptations/QT/Shell/UnjoinedWork.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/Shells/ManagementShell.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QtTest/QTest>

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <cstdlib>
#include <semaphore>
#include <unistd.h>

using namespace Vu;
using namespace Vu::Commands;

namespace {

/// A separate workspace, with a window on the home screen.
class HomeTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        forgetAll();
        m_before = WorkspaceMgr::activeWorkspace();
        m_workspace = WorkspaceMgr::get()->create();
        m_workspace->window()->show();
    }
    void TearDown() override
    {
        WithProgram::TearDown();
        WorkspaceMgr::get()->close(m_workspace);
        WorkspaceMgr::activeWorkspace(m_before);
        forgetAll();
    }

    static void forgetAll()
    {
        RecentDocumentMgr::get()->clearRecent();
        for (RecentPaths* paths : {&RecentPaths::files(), &RecentPaths::scripts()})
            for (const RecentPaths::Entry& entry : std::vector(paths->entries()))
                paths->remove(entry.path);
    }

    TileSection* section(const char* name) const
    {
        return static_cast<TileSection*>(m_workspace->window()->widget()->findChild<QWidget*>(name));
    }
    const std::vector<Tile*>& recent() const { return section("recentDocuments")->tiles(); }
    const std::vector<Tile*>& open() const { return section("openDocuments")->tiles(); }
    template <class Condition>
    static bool becomes(Condition condition)
    {
        return UiTests::becomes([&] {
            Application::get()->processEvents();
            return condition();
        });
    }
    static std::wstring file(const std::wstring& name)
    {
        boost::filesystem::ofstream(scratch(name)) << "nothing that could be opened";
        return scratch(name);
    }
    ShellMgr* shells() const { return m_workspace->shellManager(); }

    Workspace* m_workspace = nullptr;
    Workspace* m_before = nullptr;
};

TEST_F(HomeTest, RecentDocumentsStandAsTilesNewestFirstAndFollowTheList)
{
    EXPECT_TRUE(recent().empty());
    auto* hint = section("recentDocuments")->findChild<QLabel*>("homeHint");
    ASSERT_NE(hint, nullptr);
    RecentDocumentMgr::get()->add(file(L"First.vlra"), false);
    RecentDocumentMgr::get()->add(file(L"Second with a dot.2.vlsim"), false);
    ASSERT_EQ(recent().size(), 2u);
    EXPECT_EQ(recent()[0]->text().toStdString(), "Second with a dot.2");
    EXPECT_TRUE(becomes([&] { return recent()[1]->note().startsWith(QStringLiteral("Today, ")); }));
    EXPECT_FALSE(recent()[1]->missing());
    EXPECT_TRUE(
        becomes([&] { return section("recentDocuments")->findChild<QLabel*>("homeHint") == nullptr; }));
    RecentDocumentMgr::get()->add(scratch(L"First.vlra"), false);
    EXPECT_EQ(recent()[0]->text().toStdString(), "First");
}

TEST_F(HomeTest, TheTileOfAFileThatIsGoneIsFaintAndCanBeTakenAwayByButtonAndByKey)
{
    file(L"Third.vlra");
    for (const wchar_t* name : {L"Gone.vlra", L"Lost.vlra", L"Third.vlra"})
        RecentDocumentMgr::get()->add(scratch(name), false);
    ASSERT_TRUE(becomes([&] { return recent()[1]->missing() && !recent()[0]->note().isEmpty(); }));
    EXPECT_FALSE(recent()[0]->missing());
    auto* remove = recent()[1]->findChild<QToolButton*>("removeTile");
    EXPECT_TRUE(remove->isVisibleTo(recent()[1]));
    QTest::mouseClick(remove, Qt::LeftButton);
    ASSERT_EQ(recent().size(), 2u);
    QTest::keyClick(recent()[1], Qt::Key_Delete);
    ASSERT_EQ(recent().size(), 1u);
    EXPECT_EQ(recent()[0]->text().toStdString(), "Third");
    // A document that the service no longer keeps is gone, even if there is a copy here.
    bool isGone = true;
    const FilePlace service([&](const boost::filesystem::path&) {
        return FilePlace::Answer{.place = L"Store", .folder = L"Store", .isGone = isGone};
    });
    WorkspaceEvent shown(m_workspace);
    WorkspaceEventSource::get()->fireWorkspaceWelcome(&shown);
    EXPECT_TRUE(becomes([&] { return recent()[0]->missing(); }));
    EXPECT_EQ(recent()[0]->note().toStdString(), "It was removed there");
    isGone = false;
    WorkspaceEventSource::get()->fireWorkspaceWelcome(&shown);
    EXPECT_TRUE(becomes([&] { return !recent()[0]->missing(); }));
    std::vector<RecentDocument*> left;
    RecentDocumentMgr::get()->recentDocuments(left, 9);
    EXPECT_EQ(left.size(), 1u);
    EXPECT_TRUE(boost::filesystem::exists(scratch(L"Third.vlra")));
}

TEST_F(HomeTest, AForeignFileStandsAmongTheRecentOnesWithItsPicture)
{
    answer(L"Design.Sample");
    answer(L"Design.Export " + scratch(L"stand.stl"));
    answer(L"Document.CloseAll");
    answer(L"Document.Open " + scratch(L"stand.stl"));
    answer(L"VuCommands.ManagementShellCmd");
    // It is rendered for the open document, and stored.
    ASSERT_TRUE(becomes([&] { return open().size() == 1; }));
    EXPECT_TRUE(becomes([&] { return open()[0]->hasPicture(); }));
    const std::wstring pictures = FilePictures::folder();
    ASSERT_TRUE(becomes([&] { return lookAt(scratch(L"stand.stl"), pictures).picture.width() > 100; }));
    answer(L"Document.CloseAll");
    RecentPaths::files().remove(scratch(L"stand.stl"));
    EXPECT_TRUE(recent().empty());
    RecentPaths::files().add(scratch(L"stand.stl"));
    ASSERT_EQ(recent().size(), 1u);
    EXPECT_EQ(recent()[0]->text().toStdString(), "stand.stl");
    EXPECT_TRUE(becomes([&] { return recent()[0]->hasPicture(); }));
    // For a file changed since there is none.
    boost::filesystem::ofstream(scratch(L"stand.stl"), std::ios::app) << "\n";
    EXPECT_TRUE(lookAt(scratch(L"stand.stl"), pictures).picture.isNull());
}

TEST_F(HomeTest, AFilterLeavesWhatHasItsWordsAndAPinnedFileStaysInFront)
{
    for (const wchar_t* name : {L"wheel.vlra", L"Front axle.stp", L"rear axle.step"})
        RecentPaths::files().add(file(name));
    const auto names = [&] {
        std::string all;
        for (const Tile* tile : recent())
            all += tile->text().toStdString() + ",";
        return all;
    };
    EXPECT_EQ(names(), "rear axle.step,Front axle.stp,wheel,");
    auto* filter = section("recentDocuments")->findChild<QLineEdit*>("recentFilter");
    QTest::keyClicks(filter, "AXLE fro");
    EXPECT_EQ(names(), "Front axle.stp,");
    QTest::keyClicks(filter, "x");
    EXPECT_EQ(names(), "");
    EXPECT_NE(section("recentDocuments")->findChild<QLabel*>("homeHint"), nullptr);
    QTest::keyClick(filter, Qt::Key_Escape);
    EXPECT_EQ(names(), "rear axle.step,Front axle.stp,wheel,");

    Tile* wheel = recent()[2];
    QTest::keyClick(wheel, Qt::Key_P);
    EXPECT_EQ(names(), "wheel,rear axle.step,Front axle.stp,");
    EXPECT_EQ(recent()[0], wheel) << "with the picture that it has";
    RecentDocumentMgr::get()->clearRecent();
    EXPECT_EQ(names(), "wheel,");
    EXPECT_TRUE(wheel->pinned());
}

TEST_F(HomeTest, ScriptsThatWereRunAreRunAgainByAPressAndForgottenByDelete)
{
    boost::filesystem::ofstream(scratch(L"make.py")) << "import quillet\nquillet.run('Design.New')\n";
    answer(L"VuCommands.RunScriptCmd " + scratch(L"make.py"));
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(documents(), 1u);
    answer(L"VuCommands.ManagementShellCmd");
    const auto row = [&] {
        for (QToolButton* button : m_workspace->window()->widget()->findChildren<QToolButton*>("homeRow"))
            if (button->accessibleName() == QStringLiteral("make.py") && button->isVisibleTo(nullptr))
                return button;
        return static_cast<QToolButton*>(nullptr);
    };
    ASSERT_NE(row(), nullptr);
    QTest::keyClick(row(), Qt::Key_Return);
    EXPECT_TRUE(becomes([&] { return documents() == 2; }));
    ASSERT_NE(row(), nullptr);
    QTest::keyClick(row(), Qt::Key_Delete);
    EXPECT_TRUE(RecentPaths::scripts().entries().empty());
    EXPECT_TRUE(becomes([&] { return row() == nullptr; }));
}

TEST_F(HomeTest, ASampleIsOpenedAsADocumentThatCountsAsUnchanged)
{
    const std::vector<Tile*>& samples = section("samples")->tiles();
    ASSERT_EQ(samples.size(), 3u);
    for (Tile* tile : samples) {
        EXPECT_TRUE(tile->hasPicture()) << tile->text().toStdString();
        tile->click();
        Application::get()->flushDeferredTasks();
        ASSERT_NE(activeSession(), nullptr);
        const Vs::Document* document = activeSession()->asset()->document();
        EXPECT_EQ(QString::fromStdWString(document->displayName()), tile->text());
        EXPECT_FALSE(document->isDirty(false));
        EXPECT_FALSE(document->activeAsset()->components()->children.empty());
        answer(L"VuCommands.ManagementShellCmd");
    }
    EXPECT_EQ(documents(), 3u);
}

TEST_F(HomeTest, ArrowKeysGoAlongAndAcrossTheRows)
{
    QWidget* window = m_workspace->window()->widget();
    // Room for two tiles in a row.
    window->resize(2 * Tile::kLeastWidth + 160, 900);
    for (const wchar_t* name : {L"e", L"d", L"c", L"b", L"a"})
        RecentDocumentMgr::get()->add(scratch(std::wstring(name) + L".vlra"), false);
    ASSERT_TRUE(becomes([&] { return recent()[2]->y() > recent()[1]->y() && recent()[1]->x() > 0; }));
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    recent()[0]->setFocus();
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(window->focusWidget(), key);
        return static_cast<Tile*>(window->focusWidget())->text().toStdString();
    };
    EXPECT_EQ(press(Qt::Key_Left), "a");
    EXPECT_EQ(press(Qt::Key_Right), "b");
    EXPECT_EQ(press(Qt::Key_Down), "d");
    EXPECT_EQ(press(Qt::Key_Down), "e") << "the last row is short";
    EXPECT_EQ(press(Qt::Key_Up), "c");
    EXPECT_EQ(press(Qt::Key_Delete), "d") << "the next one takes its place";
    EXPECT_EQ(press(Qt::Key_P), "d") << "the window's hot key of this letter has to wait";
    EXPECT_TRUE(recent()[0]->pinned());
    EXPECT_EQ(recent()[0]->text().toStdString(), "d");
    // Tab goes from the field above the tiles into them, although they were created later.
    auto* filter = window->findChild<QLineEdit*>("recentFilter");
    filter->setFocus();
    EXPECT_EQ(press(Qt::Key_Tab), "d");
    QTest::keyClick(window->focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(window->focusWidget(), filter);
}

TEST_F(HomeTest, OpenAssetsStandAboveAndAPressGoesBackToThem)
{
    EXPECT_TRUE(section("openDocuments")->isHidden());
    answer(L"Design.Sample");
    AssetSession* first = activeSession();
    answer(L"Design.New");
    answer(L"Design.Box 1 2 3");
    answer(L"VuCommands.ManagementShellCmd");
    ASSERT_TRUE(becomes([&] { return section("openDocuments") && open().size() == 2; }));
    // The command line is below the page again, and not on top of it.
    const QWidget* window = m_workspace->window()->widget();
    const auto* page = window->findChild<QWidget*>("scrollPage");
    const auto* line = window->findChild<QWidget*>("commandBox");
    EXPECT_TRUE(becomes([&] {
        return line->isVisible() &&
               page->mapTo(window, QPoint(0, page->height())).y() <= line->mapTo(window, QPoint(0, 0)).y();
    }));
    EXPECT_EQ(open()[0]->text().toStdString(), "Sample");
    EXPECT_EQ(open()[0]->note().toStdString(), "");
    EXPECT_EQ(open()[1]->note().toStdString(), "Changed");
    QTest::keyClick(open()[0], Qt::Key_Return);
    EXPECT_NE(shells()->activeShell(), findShell<AssetShell>(shells())) << "the command runs behind the key";
    EXPECT_TRUE(becomes([&] { return shells()->activeShell() == findShell<AssetShell>(shells()); }));
    EXPECT_EQ(activeSession(), first);
}

TEST_F(HomeTest, OnlyPicturesOfWhatChangedAreDrawnAgain)
{
    answer(L"Design.Sample");
    answer(L"Design.New");
    AssetSession* second = activeSession();
    answer(L"Design.Box 1 2 3");
    answer(L"VuCommands.ManagementShellCmd");
    const auto drawn = [&] {
        return open().size() == 2 && open()[0]->hasPicture() && open()[1]->hasPicture();
    };
    ASSERT_TRUE(becomes(drawn));
    const std::vector<Tile*> tiles = open();
    for (Tile* tile : tiles)
        tile->picture({});
    answer(L"VuCommands.AssetShellCmd " + second->serialize());
    answer(L"Design.Box 5 5 5 20,0,0");
    answer(L"VuCommands.ManagementShellCmd");
    EXPECT_TRUE(becomes([&] { return open()[1]->hasPicture(); }));
    EXPECT_FALSE(open()[0]->hasPicture());
    EXPECT_EQ(open(), tiles);
}

TEST_F(HomeTest, ClosingFromATileAsksForWhatWasChanged)
{
    answer(L"Design.New");
    answer(L"Design.Box 1 2 3");
    answer(L"VuCommands.ManagementShellCmd");
    ASSERT_TRUE(becomes([&] { return section("openDocuments") && open().size() == 1; }));
    answerBoxes(2);
    open()[0]->findChild<QToolButton*>("removeTile")->click();
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(documents(), 1u);
}

TEST_F(HomeTest, AnEmptyModelSaysHowOneBeginsUntilSomethingIsInIt)
{
    answer(L"Design.New");
    const auto shown = [&] {
        const auto* hint = m_workspace->window()->widget()->findChild<QWidget*>("emptyHint");
        return hint && hint->isVisible();
    };
    EXPECT_TRUE(becomes(shown));
    answer(L"Design.Box 1 2 3");
    EXPECT_TRUE(becomes([&] { return !shown(); }));
    answer(L"VuCommands.UndoCmd");
    EXPECT_TRUE(becomes(shown));
    answer(L"Design.Sample");
    EXPECT_TRUE(becomes([&] { return !shown(); }));
}

TEST(FilePreviewTest, DaysAreToldAsAPersonWould)
{
    const QDateTime now(QDate(2024, 3, 1), QTime(0, 5));
    EXPECT_EQ(dayText(now.addSecs(-240), now).toStdString(), "Today, 00:01");
    EXPECT_EQ(dayText(QDateTime(QDate(2024, 2, 29), QTime(23, 59)), now).toStdString(), "Yesterday, 23:59");
    EXPECT_EQ(dayText(QDateTime(QDate(2024, 2, 29), QTime(0, 0)), now).toStdString(), "Yesterday, 00:00");
    EXPECT_EQ(dayText(QDateTime(QDate(2024, 2, 28), QTime(23, 59)), now).toStdString().find("esterday"),
              std::string::npos);
    EXPECT_EQ(dayText(now.addDays(1), now).toStdString().find("Today"), std::string::npos);
}

TEST(FilePreviewTest, AFolderIsNoFileAndNobodyIsToldWhoIsGone)
{
    const boost::filesystem::path folder = boost::filesystem::temp_directory_path();
    EXPECT_FALSE(lookAt(folder.wstring(), L"").exists);
    EXPECT_FALSE(lookAt(L"", L"").exists);
    Application::get()->needGui();
    bool told = false;
    {
        QObject receiver;
        lookAtLater(folder.wstring(), &receiver, [&](const FilePreview&) { told = true; });
    }
    QTest::qWait(50);
    EXPECT_FALSE(told);
}

TEST(UnjoinedWorkTest, ADiskThatDoesNotAnswerHoldsUpNeitherOtherWorkNorTheEndOfTheProgram)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto workAndEnd = [] {
        Application::get()->needGui();
        static std::binary_semaphore begun(0), done(0);
        UnjoinedWork::start([]() -> UnjoinedWork::Then {
            begun.release();
            for (;;)
                pause();
        });
        begun.acquire();
        UnjoinedWork::start([]() -> UnjoinedWork::Then { return [] { done.release(); }; });
        done.acquire();
        Application::get()->shutDown();
        std::exit(0);
    };
    EXPECT_EXIT(workAndEnd(), testing::ExitedWithCode(0), "");
}

} // namespace
