#include "Tests/Commands/EditComponents.h"

namespace {

/// Box1 and Box2 stand in the origin, Box3 at (10, 0, 0).
class EditCommandsTest : public CommandsTests::EditComponents
{
protected:
    static GkPoint3d placeOf(const std::wstring& text)
    {
        const auto place = path(text).placement(*asset());
        return place.value_or(GkMatrix3d()) * GkPoint3d();
    }
    static void expectAt(const std::wstring& text, const GkPoint3d& wanted)
    {
        EXPECT_LT(placeOf(text).distanceTo(wanted), 1e-9) << placeOf(text).x << ' ' << placeOf(text).y;
    }
};

TEST_F(EditCommandsTest, LinesMoveTurnAndCopyWithUnitsAndExpressions)
{
    const unsigned before = steps();
    answer(L"Design.Move Box1 \"12.5 mm\" \"1/2 in\" 2*(1+1)");
    expectAt(L"Box1", {12.5, 12.7, 4});
    answer(L"Design.Rotate Box3 Z \"90 deg\" Origin");
    expectAt(L"Box3", {0, 10, 0});
    answer(L"Design.Rotate Box3 Z 180");
    expectAt(L"Box3", {-3, 13, 0});
    answer(L"Design.Rotate Box3 X \"pi/2 rad\" Point 0 \"1 cm\" 0");
    expectAt(L"Box3", {-3, 10, 3});
    answer(L"Design.Copy Box2 0 0 5");
    expectAt(L"Box2:2", {0, 0, 5});
    EXPECT_EQ(paths().size(), 4u);
    EXPECT_EQ(steps(), before + 5);
    EXPECT_EQ(Vs::Transaction::undoName(asset()), L"Copy");
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(paths().size(), 3u);
}

TEST_F(EditCommandsTest, LinesThatMakeNoSenseSayWhyAndLeaveNoStep)
{
    const unsigned before = steps();
    EXPECT_NE(failure(L"Design.Move Box1 1 2").find(L"Usage"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Move Boxes 1 2 3").find(L"\"Boxes\""), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Move Box1 1/0 2 3").find(L"Along X"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Move Box1 1 \"2 deg\" 3").find(L"Along Y"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Move Box1 1 2 1e12").find(L"Move: "), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Move Box1/Face1 1 2 3").find(L"Components"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Rotate Box1 W 1").find(L"Axis"), std::wstring::npos);
    answer(L"Design.Copy Box1 0 0 1");
    EXPECT_NE(failure(L"Design.Move Box1 1 2 3").find(L"Box1:1"), std::wstring::npos);
    EXPECT_EQ(steps(), before + 1);
    EXPECT_NE(failure(L"Commands.SetInput Dx 1"), L""); // none of them still runs
}

TEST_F(EditCommandsTest, ARunningCommandShowsWhatItWillDoAndKeepsItAsOneStep)
{
    const unsigned before = steps();
    select({L"Box2", L"Box3"});
    answer(L"Commands.Start MoveCommand");
    answer(L"Commands.SetInput Dx \"1 cm\"");
    expectAt(L"Box2", {10, 0, 0});
    expectAt(L"Box3", {20, 0, 0});
    answer(L"Commands.SetInput Dy 5");
    expectAt(L"Box3", {20, 5, 0});
    EXPECT_EQ(steps(), before);
    answer(L"Commands.Commit");
    expectAt(L"Box2", {10, 5, 0});
    EXPECT_EQ(steps(), before + 1);
    answer(L"VuCommands.UndoCmd");
    expectAt(L"Box3", {10, 0, 0});
}

TEST_F(EditCommandsTest, ACommandThatIsGivenUpLeavesNothingBehind)
{
    const unsigned before = steps();
    select({L"Box1"});
    answer(L"Commands.Start CopyCommand");
    answer(L"Commands.SetInput Dz 7");
    EXPECT_EQ(paths().size(), 4u);
    answer(L"Commands.Cancel");
    EXPECT_EQ(paths().size(), 3u);
    EXPECT_EQ(steps(), before);
    selected().clear();
    answer(L"Commands.Start CopyCommand");
    EXPECT_NE(failure(L"Commands.Commit").find(L"Components"), std::wstring::npos);
    answer(L"Commands.Cancel");
}

TEST_F(EditCommandsTest, AChangeThatCantBeMadeIsTakenBackAndKeepsTheCommandFromEnding)
{
    select({L"Box1"});
    answer(L"Commands.Start MoveCommand");
    answer(L"Commands.SetInput Dx 1");
    answer(L"Commands.SetInput Dx \"1e13 m\"");
    expectAt(L"Box1", {0, 0, 0});
    EXPECT_NE(failure(L"Commands.Commit").find(L"Move: "), std::wstring::npos);
    answer(L"Commands.SetInput Dx 2");
    answer(L"Commands.Commit");
    expectAt(L"Box1", {2, 0, 0});
}

} // namespace
