#include "Server/Base/TranscriptMgr.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Tests/Support/Files.h"
#include "Tests/UI/Commands/InCanvas.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/KeyEvents.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Commands/Selection/SelectCmd.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <boost/algorithm/string/split.hpp>

using namespace Vu;
using CommandsTests::Texts;

namespace {

class Select : public CommandsTests::Navigation
{
protected:
    static Vs::SelectionSet& selected() { return activeSession()->selectionManager()->selectionSet(); }
    static Vs::SelectionSet& lit() { return activeSession()->selectionManager()->highlightSet(); }
    static void releaseS(unsigned modifiers = 0)
    {
        KeyEvent event('S', modifiers);
        Vs::cast<IKeyEventHandler>(activeCommand())->keyRelease(&event);
    }
    /// The paths of what is highlighted.
    static Texts litPaths()
    {
        Texts texts;
        for (const auto& selection : lit().selections())
            texts.push_back(Vs::pathText(Vs::cast<Vs::LogicalSelection>(selection.get())->path(),
                                         *activeSession()->asset()));
        return texts;
    }
};

TEST_F(Select, RestsWhileNoToolRunsAndKeepsWhatIsSelected)
{
    EXPECT_TRUE(Vs::cast<Commands::SelectCmd>(activeCommand()));
    click(kLeftButton, 0, 0);
    EXPECT_EQ(selected().size(), 1u);
    start(L"PanCommand");
    EXPECT_EQ(activeKey(), L"PanCommand");
    answer(L"Commands.Cancel");
    EXPECT_TRUE(Vs::cast<Commands::SelectCmd>(activeCommand()));
    EXPECT_EQ(selected().size(), 1u) << "what is selected outlives the command";
    const CommandBase* before = activeCommand();
    answer(L"VuCommands.SelectCmd");
    EXPECT_TRUE(Vs::cast<Commands::SelectCmd>(activeCommand()));
    EXPECT_NE(activeCommand(), before);
    EXPECT_EQ(selected().size(), 1u);
    EXPECT_EQ(&Vs::cast<Commands::SelectCmd>(activeCommand())->selectionCommandInput()->selectionSet(),
              &selected());
}

TEST_F(Select, LightsUpAllSmartBodiesAtTheSKey)
{
    answer(L"Design.Cylinder 5 9 100,0,0");
    answer(L"Design.Sphere 7 0,100,0");
    lit().add(Vs::StrongRef<Vs::Selection>(new Vs::GroupSelection({})));
    releaseS(kShiftModifier);
    EXPECT_EQ(litPaths(), (Texts{L"Box1:1/Body1", L"Cylinder1:1/Body1", L"Sphere1:1/Body1"}));

    const auto& parts = activeSession()->asset()->components()->children;
    std::wstring kind;
    GkMatrix3d placement;
    double sizes[3] = {};
    ASSERT_TRUE(parts[1]->body->smart(&kind, &placement, &sizes[0], &sizes[1], &sizes[2]));
    EXPECT_EQ(kind, L"Cylinder");
    EXPECT_NEAR(sizes[0], 5, 1e-9);
    EXPECT_NEAR(sizes[1], 9, 1e-9);
    EXPECT_NEAR((placement * GkPoint3d(0, 0, 9)).z, 9, 1e-9);

    auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(activeSession()->asset()->adapter());
    Vs::Scene::NodeChange(scene->node(parts[0]->id)).visible(false);
    Vs::Scene::NodeChange(scene->node(parts[1]->id)).visible(false);
    releaseS();
    EXPECT_EQ(litPaths(), (Texts{L"Sphere1:1/Body1"}));
    Vs::Scene::NodeChange(scene->node(parts[2]->id)).visible(false);
    releaseS();
    EXPECT_TRUE(lit().empty()) << "nothing is smart, and what was lit up before went out";
    KeyEvent other('A');
    lit().add(Vs::StrongRef<Vs::Selection>(new Vs::GroupSelection({})));
    Vs::cast<IKeyEventHandler>(activeCommand())->keyRelease(&other);
    EXPECT_EQ(lit().size(), 1u);
}

TEST_F(Select, LightsUpABodyThatOccursTwiceOnlyOnce)
{
    answer(L"Selection.Select Box1");
    answer(L"VuCommands.CopyToClipboardCmd");
    answer(L"VuCommands.PasteCmd");
    EXPECT_EQ(activeSession()->asset()->components()->children.size(), 2u);
    releaseS();
    EXPECT_EQ(litPaths(), (Texts{L"Box1:1/Body1"}));
}

TEST_F(Select, FindsSmartBodiesInFilesOfOtherPrograms)
{
    SKIP_WITHOUT_REAL_DATA();
    const auto litIn = [this](const wchar_t* file) {
        answer(L"Document.Open \"" + (TestSupport::realDataFolder() / file).wstring() + L'"');
        releaseS();
        return lit().size();
    };
    EXPECT_EQ(litIn(L"red_cube_blue_cylinder.step"), 2u);
    // A plate with holes, and others that are more than a single simple solid.
    EXPECT_EQ(litIn(L"as1-oc-214.stp"), 0u);
}

class SelectRecording : public Select
{
protected:
    void TearDown() override
    {
        Vs::TranscriptMgr::get()->endRecording();
        answer(L"Transcripting.RecordSelectMouseEvent");
        Select::TearDown();
    }
    void record()
    {
        Vs::Status status;
        ASSERT_TRUE(
            Vs::TranscriptMgr::get()->startRecording(scratch(L"mouse.txt"), Vs::kTextTranscript, status));
        // Recording starts with the command's next activation.
        answer(L"VuCommands.SelectCmd");
    }
    /// The recorded mouse lines.
    Texts recorded()
    {
        Vs::TranscriptMgr::get()->endRecording();
        const std::string content = TestSupport::contentOf(scratch(L"mouse.txt"));
        Texts lines, all;
        const std::wstring wide(content.begin(), content.end());
        boost::algorithm::split(all, wide, [](wchar_t c) { return c == L'\n'; });
        for (const std::wstring& line : all)
            if (line.starts_with(L"Mouse."))
                lines.push_back(line);
        return lines;
    }
};

TEST_F(SelectRecording, WritesLinesThatDoTheSameInACanvasOfAnotherSize)
{
    EXPECT_EQ(answer(L"Transcripting.RecordSelectMouseEvent /On"), L"Record mouse events of select command.");
    record();
    move(3, 4);
    click(kLeftButton, 3, 4, kControlModifier);
    click(kRightButton, 200, 3);
    const Texts lines = recorded();
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_TRUE(lines[0].starts_with(L"Mouse.Move ")) << "a move with no button";
    EXPECT_NE(lines[1].find(L" Left 1 /Control"), std::wstring::npos);
    EXPECT_NE(lines[4].find(L"Mouse.Up "), std::wstring::npos);

    ASSERT_EQ(selected().size(), 1u);
    selected().clear();
    lit().clear();
    run(lines[0]);
    EXPECT_EQ(lit().size(), 1u);
    run(lines[1]);
    run(lines[2]);
    EXPECT_EQ(selected().size(), 1u);
}

TEST_F(SelectRecording, IsSwitchedByTheFlagAloneAndOffAtFirst)
{
    record();
    click(kLeftButton, 0, 0);
    EXPECT_TRUE(recorded().empty());
    for (const wchar_t* line :
         {L"Transcripting.RecordSelectMouseEvent /off", L"Transcripting.RecordSelectMouseEvent"}) {
        EXPECT_EQ(answer(L"Transcripting.RecordSelectMouseEvent /on"),
                  L"Record mouse events of select command.");
        EXPECT_EQ(answer(line), L"Not record mouse events of select command.");
    }
}

TEST_F(SelectRecording, TellsWhatIsWrongWithALine)
{
    EXPECT_NE(failure(L"Mouse.Down 0.1").find(L"two numbers"), std::wstring::npos);
    EXPECT_NE(failure(L"Mouse.Down 0 0 Upper").find(L"\"Upper\""), std::wstring::npos);
    EXPECT_NE(failure(L"Mouse.Up 0 0 Left 99").find(L"no such view"), std::wstring::npos);
    EXPECT_EQ(run(L"Mouse.Move x y").first, 1u);
}

using SelectInTheCanvas = CommandsTests::InCanvas;

TEST_F(SelectInTheCanvas, TheDeleteKeyDeletesWhatIsSelectedUnlessAToolRuns)
{
    clickAt(placeOf(L"Box3"));
    EXPECT_EQ(selectedComponents(), (Texts{L"Box3:1"}));
    answer(L"Commands.Start PanCommand");
    QTest::keyClick(canvas, Qt::Key_Delete);
    settle();
    EXPECT_EQ(paths().size(), 3u);
    answer(L"Commands.Cancel");
    select({L"Box3"});
    QTest::keyClick(canvas, Qt::Key_Delete);
    settle();
    EXPECT_EQ(paths(), (Texts{L"Box1:1", L"Box2:1"}));
}

TEST_F(SelectInTheCanvas, TheDeleteKeyInAPanelTakesBackWhatIsChosenThere)
{
    select({L"Box3"});
    answer(L"Commands.Start MoveCommand");
    settle();
    auto* chosen = canvas->window()->findChild<QPushButton*>(QStringLiteral("inputSelection"));
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->text(), QStringLiteral("Box3"));
    chosen->setFocus();
    QTest::keyClick(chosen, Qt::Key_Tab);
    EXPECT_TRUE(qobject_cast<QLineEdit*>(QApplication::focusWidget())) << "the next stop is the next field";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), chosen);
    QTest::keyClick(chosen, Qt::Key_Delete);
    settle();
    EXPECT_EQ(chosen->text(), QStringLiteral("Select in the view"));
    EXPECT_FALSE(chosen->parentWidget()->findChild<QLabel*>(QStringLiteral("inputMark"))->isVisible())
        << "nothing is wrong yet";
    EXPECT_EQ(paths().size(), 3u) << "the component itself stays";
    answer(L"Commands.Cancel");
}

TEST_F(SelectInTheCanvas, TheMenuIsAboutWhatIsClickedOrAboutAllThatIsSelected)
{
    select({L"Box1"});
    menuAt(placeOf(L"Box3"), "Delete");
    EXPECT_EQ(paths(), (Texts{L"Box1:1", L"Box2:1"}));
    select({L"Box1", L"Box2"});
    // The face that one more click would take doesn't displace the component.
    EXPECT_TRUE(menuAt(placeOf(L"Box2")).contains("Delete"));
    EXPECT_EQ(selectedComponents(), (Texts{L"Box1:1", L"Box2:1"}));
    menuAt(nowhere(), "Delete");
    EXPECT_EQ(paths(), Texts()) << "a click beside everything changes nothing of the selection";
}

TEST_F(SelectInTheCanvas, ADragOfTheRightButtonOpensNoMenu)
{
    select({L"Box1"});
    const QPoint from = nowhere(), to = from - QPoint(60, 60);
    QTest::mousePress(canvas, Qt::RightButton, {}, from);
    QTest::mouseMove(canvas, (from + to) / 2);
    QTest::mouseMove(canvas, to);
    QTest::mouseRelease(canvas, Qt::RightButton, {}, to);
    settle();
    EXPECT_FALSE(QApplication::activePopupWidget());
}

} // namespace
