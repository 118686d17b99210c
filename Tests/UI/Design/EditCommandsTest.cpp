#include "Server/Base/Progress.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Tests/UI/Commands/InCanvas.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"

#include <QScrollArea>
#include <QScrollBar>

#include <atomic>
#include <cmath>
#include <numbers>
#include <thread>

namespace {

/// Box1 and Box2 are at the origin, Box3 at (10, 0, 0).
class EditCommandsTest : public CommandsTests::EditComponents
{
protected:
    static GkPoint3d placeOf(const std::wstring& text)
    {
        const auto place = Vs::placementOf(path(text), *asset());
        return place.value_or(GkMatrix3d()) * GkPoint3d();
    }
    double volume(const std::wstring& text)
    {
        const Vs::Component* component = Vs::resolvePath(path(text), *asset(), m_status);
        const auto measured = component && component->body ? Vs::bodyProperties(*component->body, m_status)
                                                           : std::optional<Vs::BodyProperties>();
        EXPECT_TRUE(measured) << m_status.toString();
        return measured ? measured->volume : 0;
    }
    static void expectAt(const std::wstring& text, const GkPoint3d& wanted)
    {
        EXPECT_LT(placeOf(text).distanceTo(wanted), 1e-9) << placeOf(text).x << ' ' << placeOf(text).y;
    }

    Vs::Status m_status;
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

TEST_F(EditCommandsTest, WhatIsSelectedOfABodyIsTheSameAfterItChanged)
{
    const auto text = [] {
        const auto& all = selected().selections();
        return all.empty()
                   ? std::wstring()
                   : Vs::pathText(Vs::cast<Vs::LogicalSelection>(all.front().get())->path(), *asset());
    };
    const auto place = [&] {
        return text().empty() ? std::wstring() : answer(L"Measure.Position " + text());
    };
    answer(L"Design.Box 40 40 10");
    answer(L"Design.Cylinder 5 30 20,20,-10");
    std::wstring top;
    for (int i = 1; top.empty() && i <= 6; ++i)
        if (answer(L"Measure.Position Box4/Face" + std::to_wstring(i)) == L"20 mm, 20 mm, 10 mm")
            top = L"Box4/Face" + std::to_wstring(i);
    select({top});
    answer(L"Design.Box 10 60 5 15,-10,7"); // A groove.
    answer(L"Design.Subtract Box4 Box5");
    EXPECT_EQ(text(), L"") << "it is two faces now";
    answer(L"VuCommands.UndoCmd");
    select({top});
    answer(L"Design.Subtract Box4 Cylinder1");
    EXPECT_EQ(place(), L"20 mm, 20 mm, 10 mm");
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(text(), Vs::pathText(path(top), *asset()));
    answer(L"VuCommands.RedoCmd");
    EXPECT_EQ(place(), L"20 mm, 20 mm, 10 mm");
    const auto input = [](const wchar_t* name) {
        return activeSession()->commandManager()->activeCommand()->commandInputSet()->findInput(name);
    };
    // A tool's preview comes and goes without affecting the selection.
    const std::wstring before = text();
    answer(L"Commands.Start FilletCommand");
    answer(L"Commands.SetInput Edges Box4/Edge5");
    EXPECT_EQ(text(), before);
    EXPECT_EQ(input(L"Edges")->displayText(), L"Edge of Box4") << "it is another edge of the preview";
    answer(L"Commands.Cancel");
    EXPECT_EQ(text(), before);
    // An edge that was rounded off can't be an edge of the next tool.
    select({L"Box4/Edge5"});
    answer(L"Design.Fillet 1 Box4/Edge5");
    EXPECT_EQ(text(), L"");
    const auto hole = [&] {
        for (int i = 1; i <= 8; ++i)
            if (run(L"Measure.Radius Box4/Face" + std::to_wstring(i)).second == L"5 mm")
                return L"Box4:1/Body1/Face" + std::to_wstring(i);
        return std::wstring();
    };
    answer(L"Commands.Start MeasureCommand");
    answer(L"Commands.SetInput SelectionInput1 " + hole());
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(activeSession()->commandManager()->activeCommand()->commandDefinition()->id(),
              L"MeasureCommand")
        << "what only looks goes on";
    EXPECT_EQ(input(L"SelectionInput1")->valueAsString(), hole());
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(input(L"SelectionInput1")->valueAsString(), L"") << "the hole is gone";
}

TEST_F(EditCommandsTest, APreviewThatWasCancelledDoesNotKeepTheToolFromBeingCommitted)
{
    answer(L"Design.Box 200 200 2");
    std::wstring pins;
    for (int i = 1; i <= 36; ++i) {
        answer(L"Design.Cylinder 3 10 " + std::to_wstring(20 + 25 * (i % 6)) + L"," +
               std::to_wstring(20 + 25 * ((i - 1) / 6)) + L",-5");
        pins += L" Cylinder" + std::to_wstring(i);
    }
    answer(L"Design.Subtract Box4" + pins);
    const double before = volume(L"Box4");
    std::wstring edges;
    const size_t count =
        Vs::resolvePath(path(L"Box4"), *asset(), m_status)->body->mesh()->edgeStarts.size() - 1;
    for (size_t i = 1; i <= count; ++i)
        edges += (i > 1 ? L"|Box4/Edge" : L"Box4/Edge") + std::to_wstring(i);
    answer(L"Commands.Start FilletCommand");
    answer(L"Commands.SetInput Radius \"0.1 mm\"");
    std::atomic<bool> over = false;
    std::thread impatient([&] {
        while (!over)
            if (Vs::Progress::active() && !Vs::Progress::cancelled())
                Vs::Progress::requestCancel();
    });
    run(L"Commands.SetInput Edges \"" + edges + L"\"");
    over = true;
    impatient.join();
    EXPECT_EQ(volume(L"Box4"), before) << "the preview was given up";
    answer(L"Commands.Commit");
    EXPECT_NE(volume(L"Box4"), before);
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
    EXPECT_NE(failure(L"Design.Rotate Box1 Z 1 Point 1 2").find(L"Usage"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Pattern Box1 X 20 3 Y").find(L"Usage"), std::wstring::npos);
    // Something that changes nothing leaves no step either.
    answer(L"Design.Move Box1 0 0 0");
    answer(L"Design.Rotate Box1 Z 0");
    EXPECT_EQ(steps(), before);
    answer(L"Design.Copy Box1 0 0 1");
    EXPECT_NE(failure(L"Design.Move Box1 1 2 3").find(L"Box1:1"), std::wstring::npos);
    EXPECT_EQ(steps(), before + 1);
    EXPECT_NE(failure(L"Commands.SetInput Dx 1"), L""); // None of them is still running.
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

TEST_F(EditCommandsTest, LinesCombineBodiesAndSayWhatTheKernelCant)
{
    answer(L"Design.Join Box1 Box2");
    EXPECT_DOUBLE_EQ(volume(L"Box1"), 8);
    EXPECT_EQ(paths().size(), 2u);
    answer(L"Design.Move Box3 -9 0 0");
    answer(L"Design.Subtract Box1 Box3 /Keep");
    EXPECT_NEAR(volume(L"Box1"), 4, 1e-9);
    EXPECT_NE(failure(L"Design.Intersect Box1 Box3").find(L"don't overlap"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Join Box1 Box1").find(L"itself"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Join Box1").find(L"Usage"), std::wstring::npos);
    answer(L"Design.Box 5 5 5");
    EXPECT_NE(failure(L"Design.Intersect Box2 Box3 Box1").find(L"don't overlap"), std::wstring::npos);
    answer(L"Design.Move Box3 -0.5 0 0");
    answer(L"Design.Intersect Box2 Box3 Box1");
    EXPECT_EQ(paths().size(), 1u);
    EXPECT_NEAR(volume(L"Box2"), 2, 1e-9);
}

TEST_F(EditCommandsTest, LinesRoundAndCutEdgesByTheirPaths)
{
    answer(L"Design.Fillet \"1 mm\" Box3/Edge1 Box3/Body1/Edge3");
    EXPECT_NEAR(volume(L"Box3"), 27 - 2 * (1 - std::numbers::pi / 4) * 3, 1e-4);
    answer(L"Design.Chamfer 0.5 Box2/Edge1 Box1/Edge1");
    EXPECT_NEAR(volume(L"Box2"), 8 - 0.25, 1e-9);
    EXPECT_NEAR(volume(L"Box1"), 1 - 0.125, 1e-9);
    EXPECT_NE(failure(L"Design.Fillet 9 Box2/Edge3").find(L"no room"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Fillet 0 Box2/Edge3").find(L"Radius"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Fillet 1 Box2/Edge99").find(L"Edge99"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Fillet 1 Box2").find(L"Edges"), std::wstring::npos);
}

TEST_F(EditCommandsTest, LinesRepeatAndMirrorComponents)
{
    answer(L"Design.Pattern Box1 X 4 3 Y \"1 cm\" 2");
    ASSERT_EQ(paths().size(), 8u);
    expectAt(L"Box1:6", {8, 10, 0});
    answer(L"Design.CircularPattern Box3 Z 360 4");
    expectAt(L"Box3:2", {0, 10, 0});
    expectAt(L"Box3:4", {0, -10, 0});
    answer(L"Design.CircularPattern Box2 Z \"90 deg\" 3 Point 0 4 0");
    expectAt(L"Box2:3", {4, 4, 0});
    const size_t before = paths().size();
    answer(L"Design.Mirror Box1:1 X 5");
    EXPECT_EQ(paths().size(), before + 1);
    EXPECT_DOUBLE_EQ(volume(L"Box1:7"), 1);
    for (const wchar_t* line : {L"Design.Pattern Box1:1 X 0 3", L"Design.Pattern Box1:1 X 1 0",
                                L"Design.Pattern Box1:1 X 1 100000", L"Design.CircularPattern Box1:1 Z 0 3",
                                L"Design.CircularPattern Box1:1 Z 400 3", L"Design.Mirror Box1:1 W"})
        EXPECT_FALSE(failure(line).empty());
    EXPECT_EQ(paths().size(), before + 1);
}

TEST_F(EditCommandsTest, LinesColourAndTakeColoursAway)
{
    answer(L"Design.Colour #ff0000 Box1 Box2/Body1 Box3/Face2");
    const Vs::Colour red{1, 0, 0, 1};
    EXPECT_EQ(Vs::resolvePath(path(L"Box2"), *asset(), m_status)->body->colour(), red);
    EXPECT_EQ(Vs::resolvePath(path(L"Box3"), *asset(), m_status)->body->mesh()->colours,
              std::vector<Vs::Colour>{red});
    answer(L"Design.Colour None Box3/Face2");
    EXPECT_TRUE(Vs::resolvePath(path(L"Box3"), *asset(), m_status)->body->mesh()->colours.empty());
    EXPECT_NE(failure(L"Design.Colour #12345g Box1").find(L"#12345g"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Colour Mauve Box1").find(L"Mauve"), std::wstring::npos);
}

TEST_F(EditCommandsTest, OfSeveralSelectedBodiesTheFirstIsTheTarget)
{
    select({L"Box3", L"Box1", L"Box2"});
    answer(L"Design.Move Box3 -9 0 0");
    answer(L"Commands.Start JoinCommand");
    EXPECT_EQ(paths(), CommandsTests::Texts{L"Box3:1"});
    answer(L"Commands.SetInput Keep 1");
    EXPECT_EQ(paths().size(), 3u);
    answer(L"Commands.Commit");
    EXPECT_EQ(paths().size(), 3u);
    EXPECT_GT(volume(L"Box3"), 27);
}

TEST_F(EditCommandsTest, APreviewOfARoundingIsMadeOfTheBodyAsItWas)
{
    answer(L"Commands.Start FilletCommand");
    answer(L"Commands.SetInput Edges Box3/Edge1");
    answer(L"Commands.SetInput Radius 0.5");
    EXPECT_LT(volume(L"Box3"), 27);
    answer(L"Commands.SetInput Radius 5");
    EXPECT_DOUBLE_EQ(volume(L"Box3"), 27);
    EXPECT_NE(failure(L"Commands.Commit").find(L"no room"), std::wstring::npos);
    answer(L"Commands.SetInput Radius 1");
    answer(L"Commands.Commit");
    EXPECT_NEAR(volume(L"Box3"), 27 - (1 - std::numbers::pi / 4) * 3, 1e-4);
    answer(L"VuCommands.UndoCmd");
    EXPECT_DOUBLE_EQ(volume(L"Box3"), 27);
}

class EditInTheCanvas : public CommandsTests::InCanvas
{
protected:
    /// What is highlighted when the pointer comes to that point of the model from nowhere.
    std::wstring lit(const GkPoint3d& place)
    {
        QTest::mouseMove(canvas, nowhere());
        settle();
        const Vs::Scene::Projection projection(*camera(), canvas->width(), canvas->height());
        const GkPoint3d shown = projection.worldToScreen(place);
        QTest::mouseMove(canvas, {int(std::lround(shown.x)), int(std::lround(canvas->height() - shown.y))});
        settle();
        return lit();
    }
    /// What is highlighted, if it is a single thing.
    static std::wstring lit()
    {
        const auto& pointed = activeSession()->selectionManager()->highlightSet().selections();
        const auto* logical =
            pointed.size() == 1 ? Vs::cast<Vs::LogicalSelection>(pointed.front().get()) : nullptr;
        return logical ? Vs::pathText(logical->path(), *asset()) : std::wstring();
    }
    static size_t faces()
    {
        return Vs::resolvePath(path(L"Box3"), *asset(), s_ignored)->body->mesh()->faces.size();
    }

    static inline Vs::Status s_ignored;
};

TEST_F(EditInTheCanvas, AnEdgeThatIsPointedAtIsThatOfTheBodyAsItWasAndIsForgottenWithTheBody)
{
    answer(L"Commands.Start FilletCommand");
    const GkPoint3d left{10, 0, 1.5}, right{13, 0, 1.5};
    const std::wstring first = lit(left), second = lit(right);
    ASSERT_NE(first, L"");
    ASSERT_NE(second, L"");
    answer(L"Commands.SetInput Edges " + first);
    canvas->setFocus();
    QTest::keyClick(canvas, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->parentWidget()->objectName(), "Radius");
    QTest::mouseMove(canvas, nowhere());
    settle();
    EXPECT_EQ(faces(), 7u);
    EXPECT_EQ(lit(right), second);
    EXPECT_EQ(faces(), 6u); // As long as the pointer is there.
    answer(L"Commands.Commit");
    EXPECT_EQ(faces(), 7u);
    EXPECT_NE(lit(), second);
}

TEST_F(EditInTheCanvas, ThePanelOfEachToolShowsAllOfItsFieldsAndEnterCommitsInEach)
{
    const auto* panel = canvas->window()->findChild<QWidget*>(QStringLiteral("commandPanel"));
    for (const wchar_t* tool : {L"FilletCommand", L"MoveCommand", L"JoinCommand", L"LinearPatternCommand"}) {
        answer(std::wstring(L"Commands.Start ") + tool);
        settle();
        ASSERT_TRUE(panel && panel->isVisible());
        EXPECT_EQ(panel->findChild<QScrollArea*>()->verticalScrollBar()->maximum(), 0) << tool;
        answer(L"Commands.Cancel");
    }
    select({L"Box1", L"Box2"});
    answer(L"Commands.Start JoinCommand");
    settle();
    for (auto* field : panel->findChildren<QWidget*>(QStringLiteral("inputSelection"))) {
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Space);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(panel->isVisible());
    EXPECT_EQ(paths().size(), 2u);
}

} // namespace
