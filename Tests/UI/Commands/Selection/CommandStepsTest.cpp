// Undo and redo inside a tool that moves things, by lines and by its handles.

#include "Server/DataModel/ModelDigest.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Commands/EditComponents.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseOverlay.h"

using namespace Vu;

namespace {

using CommandsTests::Texts;

uint64_t digest(const Vs::Asset* asset)
{
    return Vs::modelDigest(*asset);
}

std::wstring input(AssetSession* session, const wchar_t* key)
{
    return session->commandManager()->activeCommand()->commandInputSet()->findInput(key)->displayText();
}

class CommandStepsTest : public CommandsTests::EditComponents
{
protected:
    void startMove()
    {
        select({L"Box1"});
        before = digest(asset());
        stepsBefore = steps();
        answer(L"Commands.Start MoveCommand");
    }
    static Texts entries(const wchar_t* key)
    {
        Texts names;
        for (const Info* item : Vs::cast<ListControl>(definition(key)->inputControl())->items())
            names.push_back(item->name());
        return names;
    }
    static std::wstring tip(const wchar_t* key)
    {
        return definition(key)->inputControl()->tooltip().description();
    }

    uint64_t before = 0;
    unsigned stepsBefore = 0;
};

} // namespace

TEST_F(CommandStepsTest, EachValueIsAStepAndAllOfThemAreOneInTheEnd)
{
    startMove();
    std::vector<uint64_t> digests{before};
    for (const wchar_t* line :
         {L"Commands.SetInput Dx 10", L"Commands.SetInput Dy 5", L"Commands.SetInput Dx 20"}) {
        answer(line);
        digests.push_back(digest(asset()));
    }
    EXPECT_EQ(entries(L"UndoDropDown"),
              (Texts{L"Undo Move - Step 3", L"Undo Move - Step 2", L"Undo Move - Step 1"}));
    EXPECT_EQ(tip(L"UndoCommand"), L"Move - Step 3");
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(digest(asset()), digests[2]);
    EXPECT_EQ(input(activeSession(), L"Dx"), L"10 mm");
    EXPECT_EQ(input(activeSession(), L"Dy"), L"5 mm");
    EXPECT_EQ(tip(L"RedoCommand"), L"Move - Step 3");
    EXPECT_EQ(entries(L"RedoDropDown"), Texts{L"Redo Move - Step 3"});
    answer(L"VuCommands.UndoDropDown 1");
    EXPECT_EQ(digest(asset()), digests[0]);
    EXPECT_EQ(input(activeSession(), L"Dx"), L"0 mm");
    answer(L"VuCommands.RedoDropDown 1");
    EXPECT_EQ(digest(asset()), digests[2]);
    EXPECT_EQ(steps(), stepsBefore);

    answer(L"Commands.Commit");
    EXPECT_EQ(steps(), stepsBefore + 1);
    EXPECT_EQ(digest(asset()), digests[2]);
    EXPECT_EQ(entries(L"UndoDropDown").front(), L"Undo Move");
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(digest(asset()), before);
    answer(L"VuCommands.RedoCmd");
    EXPECT_EQ(digest(asset()), digests[2]);
}

TEST_F(CommandStepsTest, ACancelledToolLeavesNothing)
{
    answer(L"VuCommands.UndoCmd");
    startMove();
    answer(L"Commands.SetInput Dx 10");
    answer(L"Commands.SetInput Dz 10");
    answer(L"VuCommands.UndoCmd");
    answer(L"Commands.Cancel");
    EXPECT_EQ(digest(asset()), before);
    EXPECT_EQ(steps(), stepsBefore);
    EXPECT_EQ(entries(L"RedoDropDown").size(), 1u) << "what could be redone before can be again";
    answer(L"VuCommands.RedoCmd");
    EXPECT_EQ(paths().size(), 3u);
}

namespace {

class HandlesInTheCanvas : public CommandsTests::Navigation
{
protected:
    /// The position of a point of the model, in pixels from the middle of the canvas.
    static GkPoint3d seen(const GkPoint3d& point)
    {
        const Vs::Scene::Projection projection(*camera(), canvas()->width(), canvas()->height());
        const GkPoint3d screen = projection.worldToScreen(point);
        return {std::round(screen.x - canvas()->width() / 2.0),
                std::round(canvas()->height() / 2.0 - screen.y), 0};
    }
};

} // namespace

TEST_F(HandlesInTheCanvas, ADragIsOneStepWithItsValueInTheInput)
{
    Vs::Asset* asset = activeSession()->asset();
    const uint64_t before = digest(asset);
    Vs::SelectionSet& selected = activeSession()->selectionManager()->selectionSet();
    selected.add(Vs::StrongRef<Vs::Selection>(
        new Vs::LogicalSelection(asset, asset->components()->children.front()->id, nullptr)));
    start(L"MoveCommand");
    ASSERT_EQ(activeKey(), L"MoveCommand");
    // Half way along the x arrow, which is a bit longer than a hundred pixels.
    const GkPoint3d middle = view()->modelFragment()->bounds().centre();
    const GkPoint3d origin = seen(middle);
    const GkPoint3d one = seen(middle + GkVector3d(1, 0, 0));
    const GkVector3d along = (one - origin).normal();
    view()->mouseOverlay()->layOut(canvas()->width(), canvas()->height());
    const auto drag = [&](int pixels) {
        const GkPoint3d from = seen(view()->modelFragment()->bounds().centre()) + along * 60;
        const GkPoint3d to = from + along * pixels;
        Navigation::drag(kLeftButton, static_cast<int>(from.x), static_cast<int>(from.y),
                         static_cast<int>(to.x), static_cast<int>(to.y));
    };
    drag(40);
    EXPECT_NE(input(activeSession(), L"Dx"), L"0 mm");
    EXPECT_EQ(input(activeSession(), L"Dy"), L"0 mm");
    EXPECT_NE(digest(asset), before);
    CommandBase* tool = activeCommand();
    EXPECT_EQ(tool->stepsDone(), 1);
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(input(activeSession(), L"Dx"), L"0 mm");
    EXPECT_EQ(digest(asset), before);
    answer(L"Commands.Cancel");
    EXPECT_EQ(digest(asset), before);
}
