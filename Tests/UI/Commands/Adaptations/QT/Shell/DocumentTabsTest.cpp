// The open documents as tabs of the window, driven by mouse and keyboard events.

#include "Server/DataModel/Document.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Shells/AssetShell.h"

#include <QMenu>
#include <QTabBar>
#include <QToolButton>
#include <QtTest/QTest>

using namespace Vu;
using namespace Vu::Commands;

namespace {

class DocumentTabsTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        m_before = WorkspaceMgr::activeWorkspace();
        m_workspace = WorkspaceMgr::get()->create();
        m_workspace->window()->show();
        m_workspace->window()->widget()->resize(1280, 800);
    }
    void TearDown() override
    {
        WithProgram::TearDown();
        WorkspaceMgr::get()->close(m_workspace);
        WorkspaceMgr::activeWorkspace(m_before);
    }

    QWidget* window() const { return m_workspace->window()->widget(); }
    QTabBar* tabs() const { return window()->findChild<QTabBar*>("documentTabs"); }
    template <class Widget = QToolButton>
    Widget* find(const char* name) const
    {
        return window()->findChild<Widget*>(QString::fromLatin1(name));
    }
    /// The texts of all tabs, the current one in brackets.
    QString texts() const
    {
        QStringList all;
        for (int i = 0; i < tabs()->count(); ++i)
            all << (i == tabs()->currentIndex() ? QStringLiteral("[%1]").arg(tabs()->tabText(i))
                                                : tabs()->tabText(i));
        return all.join(QLatin1Char(' '));
    }
    bool becomes(const QString& wanted) const
    {
        const bool done = UiTests::becomes([&] {
            Application::get()->flushDeferredTasks();
            return tabs() && texts() == wanted;
        });
        EXPECT_TRUE(done) << (tabs() ? texts().toStdString() : "no tabs");
        return done;
    }
    static void make(const wchar_t* name)
    {
        answer(L"Design.New");
        answer(L"Document.Rename \"" + std::wstring(name) + L'"');
        answer(L"Document.Save \"" + scratch(std::wstring(name) + L".vlra") + L'"');
    }
    static std::wstring shown()
    {
        const DocumentSession* session = SessionMgr::get()->activeDocumentSession();
        return session ? session->document()->displayName() : std::wstring();
    }
    QPoint middle(int tab) const { return tabs()->tabRect(tab).center(); }
    void key(int key, Qt::KeyboardModifiers modifiers) const
    {
        // The window's keys are shortcuts, which need an active window.
        window()->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
        QTest::keyClick(window(), static_cast<Qt::Key>(key), modifiers);
    }

    Workspace* m_workspace = nullptr;
    Workspace* m_before = nullptr;
};

} // namespace

TEST_F(DocumentTabsTest, AClickShowsADocumentAndEachTabTellsNameChangesStateAndPath)
{
    make(L"Wheel & axle");
    make(L"Screw");
    ASSERT_TRUE(becomes("Wheel && axle [Screw]"));
    QTest::mouseClick(tabs(), Qt::LeftButton, {}, middle(0));
    ASSERT_TRUE(becomes("[Wheel && axle] Screw"));
    EXPECT_EQ(shown(), L"Wheel & axle");
    EXPECT_EQ(tabs()->tabToolTip(0).toStdWString(), scratch(L"Wheel & axle.vlra"));
    answer(L"Design.Box 1 1 1");
    ASSERT_TRUE(becomes("[Wheel && axle*] Screw"));
    EXPECT_EQ(tabs()->accessibleTabName(0).toStdString(), "Wheel & axle, Changed");
    answer(L"VuCommands.UndoCmd");
    answer(L"Document.Save");
    ASSERT_TRUE(becomes("[Wheel && axle] Screw"));
    {
        const DocumentRemark waits([](const Vs::Document& document) {
            return document.displayName() == L"Screw" ? std::wstring(L"waiting") : std::wstring();
        });
        Vs::Event event;
        DocumentRemarkSource::get()->fireDocumentRemarksChanged(&event);
        ASSERT_TRUE(becomes("[Wheel && axle] Screw (waiting)"));
    }
    Vs::Event event;
    DocumentRemarkSource::get()->fireDocumentRemarksChanged(&event);
    ASSERT_TRUE(becomes("[Wheel && axle] Screw"));
}

TEST_F(DocumentTabsTest, AClosedTabAsksAboutChangesAndLeavesToItsNeighbourTheLastOneToTheHomeScreen)
{
    for (const wchar_t* name : {L"A", L"B", L"C"})
        make(name);
    QTest::mouseClick(tabs(), Qt::LeftButton, {}, middle(1));
    ASSERT_TRUE(becomes("A [B] C"));
    QTest::mouseClick(tabs(), Qt::MiddleButton, {}, middle(0));
    ASSERT_TRUE(becomes("[B] C")) << "another tab than the one that shows changes nothing else";
    EXPECT_EQ(shown(), L"B");

    answer(L"Design.Box 1 1 1");
    ASSERT_TRUE(becomes("[B*] C"));
    constexpr int kCancel = 2;
    answerBoxes(kCancel);
    QTest::mouseClick(tabs()->tabButton(0, QTabBar::RightSide), Qt::LeftButton);
    ASSERT_TRUE(UiTests::becomes([&] {
        Application::get()->flushDeferredTasks();
        return boxes().size() == 1;
    }));
    ASSERT_TRUE(becomes("[B*] C"));
    answer(L"Document.Save");
    ASSERT_TRUE(becomes("[B] C"));
    key(Qt::Key_W, Qt::ControlModifier);
    ASSERT_TRUE(becomes("[C]")) << "a key does as the button";
    EXPECT_EQ(shown(), L"C");
    EXPECT_EQ(boxes().size(), 1u);
    tabs()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(tabs(), Qt::Key_Delete);
    EXPECT_TRUE(UiTests::becomes([&] {
        Application::get()->flushDeferredTasks();
        return documents() == 0;
    }));
    EXPECT_EQ(Vs::cast<AssetShell>(m_workspace->shellManager()->activeShell()), nullptr);
}

TEST_F(DocumentTabsTest, ADragGivesATabAnotherPlaceWhichTheKeysAndListsFollow)
{
    for (const wchar_t* name : {L"A", L"B", L"C"})
        make(name);
    ASSERT_TRUE(becomes("A B [C]"));
    QTest::mousePress(tabs(), Qt::LeftButton, {}, middle(2));
    for (int i = 1; i <= 10; ++i)
        QTest::mouseMove(tabs(), middle(2) + (middle(0) - middle(2) - QPoint(20, 0)) * i / 10);
    QTest::mouseRelease(tabs(), Qt::LeftButton, {}, middle(0) - QPoint(20, 0));
    ASSERT_TRUE(becomes("[C] A B"));
    std::wstring names;
    for (const Vs::Document* document : SessionMgr::get()->openDocuments())
        names += document->displayName();
    EXPECT_EQ(names, L"CAB");
    key(Qt::Key_Tab, Qt::ControlModifier);
    ASSERT_TRUE(becomes("C [A] B"));
    key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(becomes("[C] A B"));
    key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(becomes("C A [B]")) << "from the first to the last";
    make(L"D");
    ASSERT_TRUE(becomes("C A B [D]"));
    tabs()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(tabs(), Qt::Key_Left);
    ASSERT_TRUE(becomes("C A [B] D"));
}

TEST_F(DocumentTabsTest, NewAndOpenInNewTabKeepWhatIsOpen)
{
    make(L"A");
    answer(L"Design.Box 1 1 1");
    answer(L"Document.SaveCopy " + scratch(L"Copy.vlra"));
    ASSERT_TRUE(becomes("[A*]"));
    answerBoxes(0);
    QTest::mouseClick(find("newTab"), Qt::LeftButton);
    EXPECT_TRUE(UiTests::becomes([&] {
        Application::get()->flushDeferredTasks();
        return tabs()->count() == 2 && tabs()->currentIndex() == 1;
    }));
    answer(L"Document.Open " + scratch(L"Copy.vlra"));
    EXPECT_TRUE(UiTests::becomes([&] { return tabs()->count() == 3 && tabs()->currentIndex() == 2; }));
    EXPECT_EQ(tabs()->tabText(2).toStdString(), "Copy");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(DocumentTabsTest, TabsWithoutRoomAreScrolledToAndStandInAList)
{
    for (int i = 0; i < 3; ++i)
        make((L"Design " + std::to_wstring(i)).c_str());
    ASSERT_TRUE(becomes("Design 0 Design 1 [Design 2]"));
    EXPECT_FALSE(find("tabList")->isVisible());
    for (int i = 3; i < 20; ++i)
        make((L"Design " + std::to_wstring(i)).c_str());
    ASSERT_TRUE(UiTests::becomes([&] { return tabs()->count() == 20 && find("tabList")->isVisible(); }));
    EXPECT_LE(window()->width(), 1280) << "tabs don't widen the window";
    EXPECT_TRUE(tabs()->rect().intersects(tabs()->tabRect(19))) << "the one that shows is in view";
    EXPECT_FALSE(tabs()->rect().intersects(tabs()->tabRect(0)));
    emit find("tabList")->menu()->aboutToShow();
    ASSERT_EQ(find("tabList")->menu()->actions().size(), 20);
    find("tabList")->menu()->actions()[1]->trigger();
    EXPECT_TRUE(UiTests::becomes([&] {
        Application::get()->flushDeferredTasks();
        return shown() == L"Design 1";
    }));
    EXPECT_TRUE(tabs()->rect().intersects(tabs()->tabRect(1)));
}
