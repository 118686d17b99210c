// A document that is replaced, as the user sees it: the question first, and the notification about one that
// was closed without asking. All through Qt's events in a window.

#include "Server/Base/Strings.h"
#include "Server/DataModel/AutoSaveDisabler.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/Documents/AutoSaveFixture.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/LeftDocuments.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Window/BellButton.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Window/NotificationPanel.h"
#include "UI/Base/Window/NotificationRow.h"
#include "UI/Base/Window/ToastStack.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Adaptations/QT/Shell/Tile.h"
#include "UI/Commands/Adaptations/QT/Shell/TileSection.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QToolButton>
#include <QUrl>

#include <boost/filesystem/operations.hpp>

#include <algorithm>

using namespace Vu;
using Vs::Document;
using Vs::DocumentMgr;
using Vs::NotificationCenter;

namespace {

namespace fs = boost::filesystem;

constexpr int kDontSave = 1;
constexpr int kCancel = 2;

class ClosedDocumentsTest : public CommandsTests::WithAutoSave
{
protected:
    void SetUp() override
    {
        m_before = WorkspaceMgr::activeWorkspace();
        m_workspace = WorkspaceMgr::get()->create();
        m_workspace->window()->show();
        WithAutoSave::SetUp();
        RecentDocumentMgr::get()->clearRecent();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        Application::testing(true);
        WithAutoSave::TearDown();
        WorkspaceMgr::get()->close(m_workspace);
        WorkspaceMgr::activeWorkspace(m_before);
        RecentDocumentMgr::get()->clearRecent();
    }
    MainWindow* window() const { return static_cast<MainWindow*>(m_workspace->window()->widget()); }
    static void settle()
    {
        for (int i = 0; i < 3; ++i) {
            Application::get()->flushDeferredTasks();
            QTest::qWait(0);
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    /// A file that can be opened; no document is open then.
    std::wstring madeFile(const std::wstring& name)
    {
        answer(L"Design.New");
        answer(L"Design.Box 1 2 3");
        answer(L"Document.SaveAs \"" + scratch(name) + L'"');
        answer(L"Document.Close");
        return scratch(name);
    }
    static void dirtyDocument(const std::wstring& name)
    {
        answer(L"Design.New");
        answer(L"Design.Box 4 5 6");
        answer(L"Document.Rename " + Vs::Strings::quote(name));
    }
    static Document* find(const std::wstring& name)
    {
        for (unsigned i = 0; i < documents(); ++i)
            if (DocumentMgr::get()->document(i)->displayName() == name)
                return DocumentMgr::get()->document(i);
        return nullptr;
    }
    /// What the user does, with that answer to the question; returns whether it was asked.
    template <class Action>
    bool asks(int button, Action&& action)
    {
        answerBoxes(button);
        const size_t before = boxes().size();
        Application::testing(false);
        action();
        settle();
        Application::testing(true);
        return boxes().size() > before;
    }
    void drop(const std::wstring& path) const
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdWString(path))});
        QDropEvent event(QPointF(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        static_cast<QObject*>(window())->event(&event);
    }
    /// The only notification about a closed document; null if there is none.
    static Vs::Notification* left()
    {
        std::vector<Vs::Notification*> found;
        NotificationCenter::get()->notificationsByClientID(LeftDocuments::clientID(), found);
        EXPECT_LE(found.size(), 1u);
        return found.empty() ? nullptr : found.front();
    }
    /// Presses a button of its row in the list behind the bell.
    void pressInList(qsizetype button) const
    {
        QTest::mouseClick(window()->bell(), Qt::LeftButton);
        const std::vector<NotificationRow*>& rows = window()->bell()->panel()->rows();
        const auto row = std::find_if(rows.begin(), rows.end(), [](const NotificationRow* each) {
            return each->notification() == left();
        });
        ASSERT_NE(row, rows.end());
        QTest::mouseClick((*row)->findChildren<QToolButton*>(QStringLiteral("notificationAction"))[button],
                          Qt::LeftButton);
        settle();
    }

private:
    Workspace* m_workspace = nullptr;
    Workspace* m_before = nullptr;
};

} // namespace

TEST_F(ClosedDocumentsTest, ADropAsksBeforeAChangedDocumentGoes)
{
    const std::wstring file = madeFile(L"Other.vlra");
    dirtyDocument(L"Part");
    EXPECT_TRUE(asks(kCancel, [&] { drop(file); }));
    EXPECT_NE(boxes().back().find(L"Part"), std::wstring::npos) << Vs::Strings::narrow(boxes().back());
    ASSERT_TRUE(find(L"Part"));
    EXPECT_TRUE(activeDocument()->isDirty(false));
    EXPECT_FALSE(find(L"Other"));

    EXPECT_TRUE(asks(kDontSave, [&] { drop(file); }));
    EXPECT_FALSE(find(L"Part"));
    ASSERT_TRUE(activeDocument());
    EXPECT_EQ(activeDocument()->displayName(), L"Other");
    EXPECT_FALSE(left()) << "who was asked is told nothing more";
    EXPECT_TRUE(files().empty());
    EXPECT_FALSE(asks(kCancel, [&] { drop(madeFile(L"Third.vlra")); })) << "nothing was changed";
}

TEST_F(ClosedDocumentsTest, ARecentTileLeavesAChangedDocumentOpenAndTheRecentListAsks)
{
    const std::wstring file = madeFile(L"Other.vlra");
    dirtyDocument(L"Part");
    auto* list = Vs::cast<ListControl>(definition(L"RecentDocumentsCommand")->inputControl());
    EXPECT_TRUE(asks(kCancel, [&] { list->selectedItem(list->items().front(), true); }));
    EXPECT_TRUE(find(L"Part"));
    EXPECT_FALSE(find(L"Other"));

    // On the home screen no document is shown that the new one could replace.
    answer(L"VuCommands.ManagementShellCmd");
    settle();
    auto* section = window()->findChild<QWidget*>(QStringLiteral("recentDocuments"));
    ASSERT_TRUE(section);
    const std::vector<Commands::Tile*>& tiles = static_cast<Commands::TileSection*>(section)->tiles();
    ASSERT_TRUE(UiTests::becomes([&] { return !tiles.empty() && tiles.front()->isVisible(); }));
    EXPECT_FALSE(asks(kCancel, [&] { QTest::mouseClick(tiles.front(), Qt::LeftButton); }));
    EXPECT_TRUE(find(L"Other"));
    ASSERT_TRUE(find(L"Part"));
    EXPECT_TRUE(find(L"Part")->isDirty(false));
    EXPECT_FALSE(left());
}

TEST_F(ClosedDocumentsTest, WhatALineHasClosedIsBroughtBackByAButton)
{
    const std::wstring name = L"Part \"one\" 50%", file = madeFile(L"Other.vlra");
    dirtyDocument(name);
    answer(L"VuCommands.OpenDocumentCmd \"" + file + L'"');
    settle();
    ASSERT_FALSE(find(name));
    ASSERT_TRUE(left());
    EXPECT_EQ(left()->title(), L"\"" + name + L"\" was closed with unsaved changes.");
    ASSERT_EQ(files().size(), 1u);
    answer(L"Design.Box 7 8 9");

    ASSERT_FALSE(window()->toasts()->toasts().empty());
    NotificationRow* toast = window()->toasts()->toasts().back();
    ASSERT_EQ(toast->notification(), left());
    const auto buttons = toast->findChildren<QToolButton*>(QStringLiteral("notificationAction"));
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons[0]->text(), QStringLiteral("Bring back"));
    QTest::mouseClick(buttons[0], Qt::LeftButton);
    settle();
    ASSERT_TRUE(find(name));
    EXPECT_TRUE(find(name)->isDirty(false));
    EXPECT_EQ(find(name)->path(), L"");
    EXPECT_EQ(activeDocument(), find(name));
    ASSERT_TRUE(find(L"Other")) << "what was shown stays open";
    EXPECT_TRUE(find(L"Other")->isDirty(false));
    EXPECT_FALSE(left());
    EXPECT_TRUE(files().empty());
    EXPECT_TRUE(RecentDocumentMgr::get()->newestFirst(1).front()->path() == file);
}

TEST_F(ClosedDocumentsTest, WhatIsBroughtBackHasItsFileIfThatIsThere)
{
    for (const bool isThere : {true, false}) {
        const std::wstring file = madeFile(L"Part.vlra");
        answer(L"Document.Open \"" + file + L'"');
        answer(L"Design.Box 4 5 6");
        answer(L"VuCommands.NewDocumentCmd VeloraAssetType");
        settle();
        ASSERT_TRUE(left());
        EXPECT_EQ(left()->file(), file);
        if (!isThere)
            fs::remove(file);
        pressInList(0);
        ASSERT_TRUE(find(L"Part"));
        EXPECT_TRUE(find(L"Part")->isDirty(false));
        EXPECT_EQ(find(L"Part")->path(), isThere ? file : L"");
        EXPECT_FALSE(left());
        answerBoxes(kDontSave);
        answer(L"Document.CloseAll");
    }
}

TEST_F(ClosedDocumentsTest, LinesBehindTheFileComeBackAsWell)
{
    dirtyDocument(L"Part");
    ASSERT_TRUE(Vs::AutoSaveController::get()->writeAll());
    {
        // As on a full disk: from now on changes are in the journal only.
        const Vs::AutoSaveDisabler disabler(activeDocument());
        answer(L"Design.Box 7 8 9");
        answer(L"VuCommands.NewDocumentCmd VeloraAssetType");
    }
    settle();
    ASSERT_TRUE(left());
    // A copy would lack them.
    FileDialog::responder([&](const auto&, std::vector<std::wstring>& names) {
        names = {scratch(L"Copy.vlra")};
        return true;
    });
    pressInList(1);
    ASSERT_TRUE(left());
    pressInList(0);
    ASSERT_TRUE(find(L"Part"));
    EXPECT_EQ(run(L"Selection.Select Box2").first, 0u);
    EXPECT_FALSE(left());
}

TEST_F(ClosedDocumentsTest, ACopyOfWhatWasClosedIsSavedAndWhatFailsKeepsIt)
{
    dirtyDocument(L"Part");
    answer(L"VuCommands.NewDocumentCmd VeloraAssetType");
    settle();
    ASSERT_TRUE(left());
    std::wstring proposed, place;
    FileDialog::responder([&](const auto& request, std::vector<std::wstring>& names) {
        proposed = request.initialPath;
        names = {place};
        return !place.empty();
    });
    for (const std::wstring& nowhere : {std::wstring(), scratch(L"no/such/folder.vlra")}) {
        place = nowhere;
        pressInList(1);
        EXPECT_EQ(proposed, L"Part.vlra");
        ASSERT_TRUE(left());
        EXPECT_EQ(files().size(), 1u);
    }
    place = scratch(L"Copy.vlra");
    pressInList(1);
    EXPECT_FALSE(left());
    EXPECT_TRUE(files().empty());
    EXPECT_FALSE(find(L"Part"));
    answer(L"Document.Open \"" + place + L'"');
    EXPECT_FALSE(activeDocument()->isDirty(false));
}

TEST_F(ClosedDocumentsTest, ANotificationOfAFileThatIsGoneSaysSo)
{
    dirtyDocument(L"Part");
    answer(L"VuCommands.NewDocumentCmd VeloraAssetType");
    settle();
    ASSERT_EQ(files().size(), 1u);
    fs::remove_all(fs::path(files()[0].autoSavedFile()).parent_path());
    pressInList(0);
    EXPECT_FALSE(find(L"Part"));
    EXPECT_EQ(documents(), 1u);
}
