#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/TransactionMgr.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QToolButton>
#include <QtTest/QTest>

using namespace Vu;

namespace {

using Names = std::vector<std::wstring>;

Info* sketchInfo()
{
    static Info info(L"TestSketchCommand", L"Sketch", nullptr);
    return &info;
}

/// A tool with steps of its own: it draws lines, and can undo them.
class Sketch : public Vs::Implements<Sketch, Command>
{
public:
    Sketch(CommandDefinition* definition, CommandContext* context) : Implements(definition, context) {}
    CommandInputSet* onCreateCommandInputs() override { return nullptr; }
    void onCommandInputEventSink(CommandInputEvent*) override {}
    void onValidateInputs(CommandInputStatus&, bool) override {}
    void onClearCommandRequests(bool) override {}
    void draw()
    {
        beginStep(true, true);
        endStep(ETerminationReason::Commit);
        ++lines;
    }
    void onStepUndo() override { --lines; }
    void onStepRedo() override { ++lines; }

    int lines = 0;
};

class SketchDef : public Vs::Implements<SketchDef, CommandDefinition>
{
public:
    SketchDef() : Implements(sketchInfo()) {}
    using CommandDefinition::readonly;
    bool offered = true;

protected:
    bool onIsApplicable(CommandContext*) const override { return offered; }
    CommandBase* onCreateCommand(CommandContext* context) override { return new Sketch(this, context); }
};

class UndoTest : public CommandsTests::WithProgram, private Vs::DocumentEventSite
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        answer(L"Design.New");
        Vs::DocumentEventSource::get()->subscribe(this);
    }
    void TearDown() override
    {
        Vs::DocumentEventSource::get()->unsubscribe(this);
        WithProgram::TearDown();
    }

    static Names parts()
    {
        Names names;
        for (const auto& child : ActiveAssetUtils::asset()->components()->children)
            names.push_back(child->name);
        return names;
    }
    static ListControl* list(const wchar_t* key)
    {
        return Vs::cast<ListControl>(definition(key)->inputControl());
    }
    static Names entries(const wchar_t* key)
    {
        Names names;
        for (const Info* item : list(key)->items())
            names.push_back(item->name());
        return names;
    }
    static std::wstring tip(const wchar_t* key)
    {
        return definition(key)->inputControl()->tooltip().description();
    }
    static Sketch* sketch()
    {
        answer(L"Commands.Start TestSketchCommand");
        return Vs::cast<Sketch>(activeSession()->commandManager()->activeCommand());
    }

    SketchDef sketchDef;
    int updates = 0; ///< How often the document was reported as shown anew.

private:
    void documentUpdated(Vs::DocumentEvent*) override { ++updates; }
};

} // namespace

TEST_F(UndoTest, GoesBackAndForthThroughTheModelAndWhatBelongsToIt)
{
    EXPECT_FALSE(applicable(L"UndoCommand"));
    answer(L"Design.Box 1 2 3");
    answer(L"NamedView.AddNamedView");
    answer(L"Design.Sphere 4");
    const Names all = parts();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_TRUE(applicable(L"UndoCommand"));
    EXPECT_FALSE(applicable(L"RedoCommand"));

    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(parts(), (Names{all[0]}));
    EXPECT_GT(updates, 0) << "the title shows whether there is something to save";
    answer(L"VuCommands.UndoCmd");
    failure(L"NamedView.RemoveNamedView NamedView");
    answer(L"VuCommands.UndoCmd");
    EXPECT_TRUE(parts().empty());
    EXPECT_FALSE(applicable(L"UndoCommand"));
    answer(L"VuCommands.UndoCmd");

    for (int i = 0; i < 4; ++i)
        answer(L"VuCommands.RedoCmd");
    EXPECT_EQ(parts(), all);
    answer(L"NamedView.RemoveNamedView NamedView");
    EXPECT_FALSE(applicable(L"RedoCommand"));

    answerBoxes(1);
    answer(L"VuCommands.CloseDocumentCmd");
    EXPECT_FALSE(applicable(L"UndoCommand"));
    answer(L"VuCommands.UndoCmd");
}

TEST_F(UndoTest, BringsSelectionAndCameraBackIfTheUserWantsIt)
{
    const auto selected = [] { return answer(L"Selection.List"); };
    const auto camera = [] { return answer(L"Camera.Dump"); };
    const std::wstring first = L"Camera.Set 9,0,0 0,0,0 0,0,1 1 100 10 10 1",
                       second = L"Camera.Set 0,9,0 0,0,0 0,0,1 1 100 10 10 1";
    const auto deleteBox = [&] {
        answer(first);
        answer(L"Selection.Select Box1:1");
        answer(L"Commands.Start DeleteCommand");
        answer(second);
        answer(L"Selection.Select Sphere1:1");
    };
    answer(L"Design.Box 1 2 3");
    answer(L"Design.Sphere 4");
    EXPECT_EQ(answer(L"Selection.Undo"), L"off");
    deleteBox();
    const std::wstring away = camera();
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(selected(), L"Sphere1:1");
    EXPECT_EQ(camera(), away);

    EXPECT_EQ(answer(L"Selection.Undo on"), L"on");
    answer(first);
    const std::wstring near = camera();
    deleteBox();
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(selected(), L"Box1:1");
    EXPECT_EQ(camera(), near);
    answer(second);
    answer(L"VuCommands.RedoCmd");
    EXPECT_EQ(selected(), L"");
    EXPECT_EQ(camera(), near);
    // An earlier step knows nothing, and what no longer exists can't be selected.
    answer(L"VuCommands.UndoDropDown 2");
    EXPECT_EQ(selected(), L"");
    answer(L"VuCommands.RedoDropDown 2");
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(selected(), L"Box1:1");
    failure(L"Selection.Undo perhaps");
    answer(L"Selection.Undo off");
}

TEST_F(UndoTest, EachStepKnowsTheCommandThatMadeIt)
{
    answer(L"Commands.Start BoxCommand");
    answer(L"NamedView.AddNamedView");
    Vs::Asset* asset = ActiveAssetUtils::asset();
    {
        Vs::Status status;
        ASSERT_TRUE(Vs::ModelBuilder(asset).box(1, 1, 1, {}, status));
    }
    sketch();
    {
        Vs::Status status;
        ASSERT_TRUE(Vs::ModelBuilder(asset).box(1, 1, 1, {}, status));
    }
    Names keys;
    for (const auto& step : Vs::TransactionMgr(asset).sessionTransaction()->doneChanges())
        keys.push_back(step->cmdKey());
    EXPECT_EQ(keys, (Names{L"BoxCommand", L"AddNamedViewCommand", L"TextCommand", L"TestSketchCommand"}));
}

TEST_F(UndoTest, AListTakesAllStepsToTheOneThatIsChosen)
{
    for (const wchar_t* line : {L"Design.Box 1 1 1", L"Design.Cylinder 1 1", L"Design.Sphere 1"})
        answer(line);
    const Names all = parts();
    EXPECT_EQ(entries(L"UndoDropDown"), (Names{L"Undo Sphere", L"Undo Cylinder", L"Undo Box"}));
    EXPECT_TRUE(list(L"UndoDropDown")->items()[0]->icon());
    ListControl* undo = list(L"UndoDropDown");
    undo->selectedItem(undo->items()[1], true);
    EXPECT_EQ(parts(), all) << "not inside of the click";
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(parts(), (Names{all[0]}));
    EXPECT_EQ(entries(L"UndoDropDown"), (Names{L"Undo Box"}));
    EXPECT_EQ(entries(L"RedoDropDown"), (Names{L"Redo Cylinder", L"Redo Sphere"}));
    // Its button undoes a single step, whatever was chosen before.
    for (const wchar_t* key : {L"RedoDropDown", L"UndoDropDown", L"UndoDropDown"}) {
        CommandContext context = CommandContext::activeContext();
        definition(key)->updateInputControl(&context);
        list(key)->clicked();
        Application::get()->flushDeferredTasks();
    }
    EXPECT_EQ(parts(), Names());
    EXPECT_EQ(entries(L"RedoDropDown").size(), 3u);
    answer(L"VuCommands.RedoCmd");

    answer(L"VuCommands.RedoDropDown 1");
    EXPECT_EQ(parts(), all);
    answer(L"VuCommands.UndoDropDown 2");
    EXPECT_TRUE(parts().empty());
    answer(L"VuCommands.RedoDropDown 0");
    EXPECT_EQ(parts().size(), 1u);
    // A nonexistent index, and a line without one, mean the nearest.
    answer(L"VuCommands.RedoDropDown 99");
    EXPECT_EQ(parts().size(), 2u);
    answer(L"VuCommands.RedoDropDown");
    EXPECT_EQ(parts(), all);
    EXPECT_FALSE(failure(L"VuCommands.UndoDropDown nearest").empty());
    EXPECT_EQ(parts(), all);
}

TEST_F(UndoTest, AToolTakesItsOwnStepsAndThenBarsTheWay)
{
    answer(L"Design.Box 1 1 1");
    Sketch* tool = sketch();
    ASSERT_TRUE(tool);
    EXPECT_FALSE(applicable(L"UndoCommand")) << "the tool may be amid a change";
    sketchDef.readonly(true);
    EXPECT_TRUE(applicable(L"UndoCommand"));
    sketchDef.readonly(false);
    answer(L"Commands.Start PanCommand");
    EXPECT_FALSE(applicable(L"UndoCommand")) << "it would end the tool below as well";
    answer(L"Commands.Cancel");

    for (int i = 0; i < 4; ++i)
        tool->draw();
    EXPECT_TRUE(applicable(L"UndoCommand"));
    EXPECT_EQ(tip(L"UndoCommand"), L"Sketch - Step 4");
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(tool->lines, 3);
    EXPECT_EQ(tip(L"UndoDropDown"), L"Sketch - Step 3");
    EXPECT_EQ(tip(L"RedoCommand"), L"Sketch - Step 4");
    EXPECT_EQ(entries(L"UndoDropDown"),
              (Names{L"Undo Sketch - Step 3", L"Undo Sketch - Step 2", L"Undo Sketch - Step 1"}));
    answer(L"VuCommands.UndoDropDown -1");
    EXPECT_EQ(tool->lines, 3);
    answer(L"VuCommands.UndoDropDown 2");
    EXPECT_EQ(tool->lines, 0);
    EXPECT_FALSE(applicable(L"UndoCommand"));
    EXPECT_EQ(entries(L"RedoDropDown").size(), 4u);
    EXPECT_EQ(entries(L"RedoDropDown")[1], L"Redo Sketch - Step 2");
    answer(L"VuCommands.RedoDropDown 99");
    EXPECT_EQ(tool->lines, 4);
    EXPECT_EQ(activeSession()->commandManager()->activeCommand(), tool);
    EXPECT_EQ(parts().size(), 1u);

    // Without steps of its own the tool is ended for the model's steps.
    tool->draw();
    answer(L"VuCommands.RedoCmd");
    EXPECT_EQ(activeSession()->commandManager()->activeCommand()->commandDefinition()->id(),
              L"SelectCommand");
    answer(L"VuCommands.UndoCmd");
    EXPECT_TRUE(parts().empty());
}

TEST_F(UndoTest, TheTooltipNamesWhatWouldHappen)
{
    EXPECT_EQ(tip(L"UndoCommand"), L"");
    answer(L"Design.Box 1 1 1");
    answer(L"Design.Sphere 1");
    EXPECT_EQ(tip(L"UndoCommand"), L"Sphere");
    EXPECT_EQ(tip(L"UndoDropDown"), L"Sphere");
    EXPECT_EQ(tip(L"RedoCommand"), L"");
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(tip(L"UndoCommand"), L"Box");
    EXPECT_EQ(tip(L"RedoDropDown"), L"Sphere");
}

TEST_F(UndoTest, RepeatRunsTheLastCommandAndBearsItsName)
{
    const auto look = [] {
        CommandContext context = CommandContext::activeContext();
        definition(L"RepeatCommand")->updateInputControl(&context);
        return definition(L"RepeatCommand")->inputControl()->info();
    };
    // Like a user who is asked in a panel, and accepts its proposal.
    const auto repeat = [] {
        answer(L"Commands.Start RepeatCommand");
        if (applicable(L"CommitCommand"))
            answer(L"VuCommands.CommitCmd");
        return parts().size();
    };
    EXPECT_FALSE(applicable(L"RepeatCommand"));
    EXPECT_EQ(look()->name(), L"Repeat...");
    EXPECT_EQ(repeat(), 0u);
    answer(L"Commands.Start BoxCommand");
    EXPECT_EQ(look()->name(), L"Repeat Box");
    EXPECT_EQ(look()->icon(), definition(L"BoxCommand")->info()->icon());
    EXPECT_EQ(repeat(), 2u);
    // What isn't offered for repetition isn't remembered.
    answer(L"VuCommands.UndoCmd");
    answer(L"VuCommands.CancelCmd");
    EXPECT_EQ(repeat(), 2u);
    EXPECT_EQ(repeat(), 3u);

    sketch();
    EXPECT_EQ(look()->name(), L"Repeat Sketch");
    sketchDef.offered = false;
    EXPECT_FALSE(applicable(L"RepeatCommand"));
    EXPECT_EQ(look()->name(), L"Repeat...");
    EXPECT_FALSE(look()->icon());
    EXPECT_EQ(look()->key(), L"RepeatCommand");
}

TEST_F(UndoTest, KeysAndButtonsDoTheSame)
{
    Workspace* const before = WorkspaceMgr::activeWorkspace();
    Workspace* const workspace = WorkspaceMgr::get()->create();
    workspace->window()->show();
    WorkspaceMgr::activeWorkspace(workspace);
    answer(L"Design.New");
    QWidget* window = workspace->window()->widget();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window)) << "only an active window has its keys";
    const auto becomes = [](const auto& condition) {
        return UiTests::becomes([&] {
            Application::get()->processEvents();
            return condition();
        });
    };
    // The buttons follow when the window has time for it.
    const auto offers = [&](bool undone, bool redone) {
        const auto enabled = [&](const char* name) {
            const auto* button = window->findChild<QToolButton*>(QString::fromLatin1(name));
            return button && button->isEnabled();
        };
        return becomes(
            [&] { return enabled("UndoDropDown") == undone && enabled("RedoDropDown") == redone; });
    };
    EXPECT_TRUE(offers(false, false));
    EXPECT_TRUE(window->findChild<QToolButton*>("UndoDropDown")->toolTip().contains("Ctrl+Z"));
    answer(L"Design.Box 1 1 1");
    answer(L"Design.Box 1 1 1");
    EXPECT_TRUE(offers(true, false));
    QTest::keyClick(window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(offers(true, true));
    EXPECT_EQ(parts().size(), 1u);
    QTest::keyClick(window, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_TRUE(offers(true, false));
    EXPECT_EQ(parts().size(), 2u);
    QTest::keyClick(window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(offers(true, true));
    answer(L"Design.Box 1 1 1");
    EXPECT_TRUE(offers(true, false)) << "a new step ends what could be redone";
    // A tool may keep the keys to itself while it guards the selection; a button is another matter.
    Sketch* tool = sketch();
    tool->draw();
    tool->draw();
    tool->selectionChangeAllowMode(1);
    QTest::keyClick(window, Qt::Key_Z, Qt::ControlModifier);
    Application::get()->processEvents();
    QApplication::processEvents();
    EXPECT_EQ(tool->lines, 2);
    definition(L"UndoCommand")->onClicked();
    EXPECT_TRUE(becomes([&] { return tool->lines == 1; }));
    tool->selectionChangeAllowMode(0);
    QTest::keyClick(window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(becomes([&] { return tool->lines == 0; }));
    WorkspaceMgr::get()->close(workspace);
    WorkspaceMgr::activeWorkspace(before);
}
