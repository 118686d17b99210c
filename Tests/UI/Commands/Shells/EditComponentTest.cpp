// Editing a component in isolation, on top of the environment that it was entered from.

#include "Server/DataModel/ModelDigest.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Tests/UI/Commands/InCanvas.h"
#include "UI/Base/Session/Environment.h"

#include <QLabel>
#include <QPushButton>

#include <boost/filesystem/fstream.hpp>

namespace {

using CommandsTests::EditComponents;
using CommandsTests::Texts;

/// Two nested assemblies, in metres and with y upwards.
constexpr const char* kNested = R"(#VRML V2.0 utf8
DEF Outer Transform { translation 10 0 0 children [
  DEF Inner Transform { rotation 0 1 0 1.5707963267948966 children [
    DEF A Shape { geometry Box { size 1 1 1 } }
    DEF B Transform { translation 0 3 0 children [ Shape { geometry Box { size 1 1 1 } } ] } ] }
  DEF C Transform { translation 0 0 5 children [ Shape { geometry Box { size 1 1 1 } } ] } ] }
DEF D Transform { translation -5 0 0 children [ Shape { geometry Box { size 1 1 1 } } ] }
)";

class EditComponentTest : public EditComponents
{
protected:
    static void openNested()
    {
        boost::filesystem::ofstream(boost::filesystem::path(scratch(L"nested.wrl"))) << kNested;
        answer(L"Document.Open \"" + scratch(L"nested.wrl") + L'"');
    }
    /// The path of the component being edited; empty for the whole model.
    static std::wstring edited()
    {
        return Vs::pathText({.component = activeSession()->editedComponent()}, *asset());
    }
    static std::wstring environment() { return activeSession()->activeEnvironment()->id(); }
    static bool has(const std::wstring& text)
    {
        Vs::Status ignored;
        return Vs::findPath(*asset(), text, ignored).has_value();
    }
    static GkPoint3d lowOf(const std::wstring& text)
    {
        BBox box;
        EXPECT_TRUE(Vs::LogicalSelection(asset(), path(text), Vs::StrongRef<Vs::Selection>())
                        .calculateBounds(*asset(), box));
        return box.low();
    }
};

TEST_F(EditComponentTest, WhatIsMadeGoesIntoTheComponentAndStaysWhereItIsInTheModel)
{
    openNested();
    answer(L"Design.Edit nested/Outer");
    answer(L"Design.Edit nested/Outer/Inner");
    EXPECT_EQ(edited(), L"nested:1/Outer:1/Inner:1");
    answer(L"Design.Box 10 20 30 1,2,3");
    EXPECT_EQ(environment(), L"ComponentEnvironment") << "solids are made here as well";
    EXPECT_LT(lowOf(L"nested/Outer/Inner/Box1").distanceTo({1, 2, 3}), 1e-6);
    EXPECT_EQ(steps(), 1u);

    select({L"nested/D"});
    answer(L"VuCommands.CopyToClipboardCmd");
    answer(L"VuCommands.PasteCmd");
    EXPECT_LT(lowOf(L"nested/Outer/Inner/D").distanceTo(lowOf(L"nested/D")), 1e-6);
    EXPECT_EQ(steps(), 2u);
    select({L"nested/Outer"});
    answer(L"VuCommands.CopyToClipboardCmd");
    EXPECT_NE(failure(L"VuCommands.PasteCmd").find(L"put into itself"), std::wstring::npos);
    EXPECT_EQ(steps(), 2u);

    answer(L"Commands.Start VeloraImportCommand \"Path=" + scratch(L"nested.wrl") + L'"');
    EXPECT_TRUE(has(L"nested/Outer/Inner/nested/Outer/C"));
    EXPECT_EQ(steps(), 3u);
    const uint64_t done = Vs::modelDigest(*asset());
    for (int i = 0; i < 3; ++i)
        answer(L"VuCommands.UndoCmd");
    EXPECT_FALSE(has(L"nested/Outer/Inner/Box1"));
    for (int i = 0; i < 3; ++i)
        answer(L"VuCommands.RedoCmd");
    EXPECT_EQ(Vs::modelDigest(*asset()), done);

    answer(L"VuCommands.ReturnToEnvironmentCmd");
    EXPECT_EQ(edited(), L"nested:1/Outer:1");
    answer(L"VuCommands.ReturnToEnvironmentCmd");
    EXPECT_EQ(edited(), L"");
    EXPECT_EQ(environment(), L"ModellingEnvironment");
    EXPECT_FALSE(applicable(L"ReturnToEnvironmentCommand"));
    answer(L"Design.Box 1 1 1");
    EXPECT_TRUE(has(L"Box1"));
}

TEST_F(EditComponentTest, WhatIsMadeInAPartIsJoinedToItAsASolidThatIsMeasuredByItself)
{
    answer(L"Design.Edit Box1");
    answer(L"Design.Box 5 5 5 20,0,0");
    EXPECT_EQ(paths(), (Texts{L"Box1:1", L"Box2:1", L"Box3:1"}));
    const auto measured = [](const std::wstring& line) { return std::stod(answer(line + L" /Plain")); };
    EXPECT_NEAR(measured(L"Measure.Volume Box1"), 126, 1e-9);
    EXPECT_NEAR(measured(L"Measure.Volume Box1/Solid1"), 1, 1e-9);
    EXPECT_NEAR(measured(L"Measure.Volume Box1/Body1/Solid2"), 125, 1e-9);
    EXPECT_NEAR(measured(L"Measure.Area Box1/Solid2"), 150, 1e-9);
    EXPECT_NEAR(measured(L"Measure.Distance Box1/Solid1 Box1/Solid2"), 19, 1e-9);
    EXPECT_NE(failure(L"Measure.Radius Box1/Solid2").find(L"no radius"), std::wstring::npos);
    EXPECT_NE(failure(L"Measure.Volume Box1/Solid3").find(L"the last is number 2"), std::wstring::npos);
    EXPECT_NE(failure(L"Measure.Volume Box1/Solid2/Face1").find(L"Face1"), std::wstring::npos);
    EXPECT_LT(lowOf(L"Box1/Solid2").distanceTo({20, 0, 0}), 1e-6);

    answer(L"Selection.Select Box1/Solid2");
    ASSERT_EQ(selected().size(), 1u);
    answer(L"Design.Box 1 1 1 30,0,0");
    EXPECT_TRUE(selected().empty()) << "it may be any other of them now";
    answer(L"VuCommands.UndoCmd");
    answer(L"VuCommands.UndoCmd");
    EXPECT_NEAR(measured(L"Measure.Volume Box1"), 1, 1e-9);
    EXPECT_EQ(edited(), L"Box1:1");
}

TEST_F(EditComponentTest, OneThatLiesElsewhereIsEnteredFromWhatHoldsBoth)
{
    EXPECT_NE(failure(L"Design.Edit").find(L"select one"), std::wstring::npos);
    EXPECT_NE(failure(L"Design.Edit Nobody").find(L"Nobody"), std::wstring::npos);
    EXPECT_EQ(environment(), L"ModellingEnvironment");
    openNested();
    answer(L"Design.Edit nested/Outer");
    select({L"nested/Outer/Inner", L"nested/D"});
    answer(L"Design.Edit nested/Outer/Inner");
    EXPECT_TRUE(selected().empty()) << "neither what is a ghost, nor what is entered";
    answer(L"Design.Edit nested/Outer/C/Face1");
    EXPECT_EQ(edited(), L"nested:1/Outer:1/C:1");
    answer(L"Design.Edit nested/Outer/C");
    answer(L"VuCommands.ReturnToEnvironmentCmd");
    EXPECT_EQ(edited(), L"nested:1/Outer:1");
    answer(L"VuCommands.ActivateEnvironmentCmd ReviewEnvironment");
    EXPECT_EQ(edited(), L"");
    select({L"nested/D"});
    answer(L"Design.Edit");
    EXPECT_EQ(edited(), L"nested:1/D:1");
    answer(L"VuCommands.ReturnToEnvironmentCmd");
    EXPECT_EQ(environment(), L"ReviewEnvironment");
}

TEST_F(EditComponentTest, WhenItIsGoneForGoodItIsLeft)
{
    answer(L"Design.Edit Box3");
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(environment(), L"ModellingEnvironment") << "it was made before it was entered";
    answer(L"VuCommands.RedoCmd");
    EXPECT_EQ(environment(), L"ModellingEnvironment");

    answer(L"Design.Edit Box2");
    answer(L"Commands.Start SubtractCommand Target=Box1 Tools=Box3");
    answer(L"Commands.Cancel");
    answer(L"Commands.Start JoinCommand Target=Box1 Tools=Box2");
    EXPECT_EQ(environment(), L"ComponentEnvironment") << "a preview takes nothing away";
    answer(L"Commands.Cancel");
    EXPECT_EQ(edited(), L"Box2:1");
    answer(L"Design.Join Box1 Box2");
    EXPECT_EQ(environment(), L"ModellingEnvironment");

    openNested();
    answer(L"Design.Edit nested/Outer");
    answer(L"Design.Edit nested/Outer/Inner");
    select({L"nested/Outer"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(environment(), L"ModellingEnvironment");
    answer(L"VuCommands.UndoCmd");
    EXPECT_TRUE(has(L"nested/Outer/Inner"));
    EXPECT_EQ(edited(), L"");
}

/// The three boxes in a window.
class EditInWindow : public CommandsTests::InCanvas
{
protected:
    void doubleClickAt(const QPoint& place)
    {
        clickAt(place);
        QTest::mouseDClick(canvas, Qt::LeftButton, {}, place);
        settle();
    }
    static std::wstring edited()
    {
        return Vs::pathText({.component = activeSession()->editedComponent()}, *asset());
    }
    QLabel* bar() const { return tree->parentWidget()->findChild<QLabel*>(QStringLiteral("EditedName")); }
};

TEST_F(EditInWindow, ADoubleClickEntersAndTheRestCantBePickedUntilReturnLeaves)
{
    ASSERT_TRUE(bar());
    EXPECT_TRUE(bar()->parentWidget()->isHidden());
    clickAt(placeOf(L"Box2"));
    EXPECT_EQ(selectedComponents(), Texts{L"Box2:1"});
    doubleClickAt(placeOf(L"Box3"));
    EXPECT_EQ(edited(), L"Box3:1");
    EXPECT_FALSE(bar()->parentWidget()->isHidden());
    EXPECT_EQ(bar()->text(), QStringLiteral("Box3"));
    clickAt(placeOf(L"Box2"));
    EXPECT_EQ(selectedComponents(), Texts());
    clickAt(placeOf(L"Box3"));
    EXPECT_EQ(selectedComponents(), Texts{L"Box3:1"});

    QTest::keyClick(canvas, Qt::Key_Return);
    settle();
    EXPECT_EQ(edited(), L"");
    EXPECT_TRUE(bar()->parentWidget()->isHidden());
    const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(asset()->adapter());
    EXPECT_FALSE(scene->rootNode()->ghost().has_value());
    EXPECT_FALSE(scene->node(path(L"Box3").component)->ghost().has_value());

    const QModelIndex box1 = below(tree->model()->index(tree->model()->rowCount() - 1, 0), L"Box1");
    ASSERT_TRUE(box1.isValid());
    click(box1);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(box1).center());
    settle();
    EXPECT_EQ(edited(), L"Box1:1");
    auto* leave = tree->parentWidget()->findChild<QPushButton*>(QStringLiteral("EditedLeave"));
    ASSERT_TRUE(leave);
    QTest::mouseClick(leave, Qt::LeftButton);
    settle();
    EXPECT_EQ(edited(), L"");
}

} // namespace
