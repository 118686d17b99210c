#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/Private/SelectionOptionGroup.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Tests/Support/Files.h"
#include "Tests/UI/Commands/InCanvas.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Commands/Selection/SelectionFilterCmd.h"

#include <QToolButton>

#include <cmath>
#include <map>

using namespace Vu;
using CommandsTests::Texts;

namespace {

/// Another tool that picks, with categories of its own.
class SelectionFilters : public CommandsTests::InCanvas
{
protected:
    void TearDown() override
    {
        Vs::TranscriptMgr::get()->endRecording();
        // The menu keeps its marks as long as the kinds stay the same.
        answer(L"VuCommands.SelectionFilterCmd selectVisible,Vertices,Edges,Faces,Bodies,Components");
        Vs::SelectionOptionGroup::get()->reset();
        InCanvas::TearDown();
    }

    static Commands::SelectionFilterCmdDef* filters()
    {
        return Vs::cast<Commands::SelectionFilterCmdDef>(definition(L"SelectionFilterCommand"));
    }
    /// The entries of the menu with their marks, as the host draws it.
    static std::map<std::wstring, bool> marks()
    {
        std::map<std::wstring, bool> marks;
        for (const MenuItem* item : Vs::cast<MenuControl>(filters()->inputControl())->items())
            if (!item->separator())
                marks[item->info()->name()] = item->checked();
        return marks;
    }
    static MenuItem* item(const std::wstring& name)
    {
        for (MenuItem* item : Vs::cast<MenuControl>(filters()->inputControl())->items())
            if (item->info()->name() == name)
                return item;
        return nullptr;
    }
    static bool enabled(const std::wstring& name)
    {
        filters()->inputControl();
        for (const Vs::SelectionCategory* category : filters()->categories())
            if (category->name() == name)
                return category->isEnabled();
        return false;
    }
    /// Opens the button's menu and clicks the entry with the mouse.
    void choose(const QString& title)
    {
        auto* button = canvas->window()->findChild<QToolButton*>("SelectionFilterCommand");
        ASSERT_TRUE(button);
        QMenu* menu = button->menu();
        menu->popup(button->mapToGlobal(QPoint(0, button->height())));
        QApplication::processEvents();
        for (QAction* action : menu->actions())
            if (action->text() == title)
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        menu->close();
        settle();
    }
    /// What a click on the component takes: its path as named.
    std::wstring clicked(const std::wstring& component)
    {
        selected().clear();
        clickAt(placeOf(component));
        return selected().empty() ? L"" : pathOf(*selected().selections().front());
    }
    static std::wstring pathOf(const Vs::Selection& selection)
    {
        return Vs::pathText(Vs::cast<Vs::LogicalSelection>(&selection)->path(), *asset());
    }
};

TEST_F(SelectionFilters, OffersTheKindsBehindTheTwoGeneralEntries)
{
    Texts names;
    for (const MenuItem* item : Vs::cast<MenuControl>(filters()->inputControl())->items())
        names.push_back(item->separator() ? L"-" : item->info()->name());
    EXPECT_EQ(names, (Texts{L"Select Visible", L"-", L"Select All", L"Vertices", L"Edges", L"Faces",
                            L"Solids", L"Bodies", L"Components"}));
    const MenuItem* edges = item(L"Edges");
    EXPECT_EQ(item(L"Edges"), edges) << "the menu of an unchanged list is not made anew";
    answer(L"Script.DiscardChanges");
    answer(L"Document.CloseAll");
    EXPECT_TRUE(marks().empty()) << "there is nothing to be picked";
}

TEST_F(SelectionFilters, WhatIsUncheckedIsNotPickedUntilItIsCheckedAgain)
{
    for (const char* kind : {"Vertices", "Edges", "Faces", "Bodies"})
        choose(kind);
    EXPECT_EQ(clicked(L"Box3"), L"Box3:1");
    EXPECT_FALSE(marks()[L"Select All"]);
    EXPECT_TRUE(marks()[L"Components"]);
    choose("Components");
    EXPECT_EQ(clicked(L"Box3"), L"");
    choose("Faces");
    EXPECT_TRUE(clicked(L"Box3").starts_with(L"Box3:1/Body1/Face"));
    choose("Faces");
    choose("Components");
    EXPECT_EQ(clicked(L"Box3"), L"Box3:1");
    EXPECT_FALSE(marks()[L"Select All"]) << "a kind that is checked again leaves the mark of all off";

    choose("Select Visible");
    EXPECT_FALSE(Vs::Scene::GraphicsOptionGroup::get()->selectClosestItemOnly());
    EXPECT_FALSE(enabled(L"Faces"));
    choose("Select All");
    for (const wchar_t* kind : {L"Vertices", L"Edges", L"Faces", L"Bodies", L"Components"})
        EXPECT_TRUE(enabled(kind));
    EXPECT_FALSE(marks()[L"Select Visible"]) << "all kinds, and still also what is hidden";
    choose("Select Visible");
    EXPECT_TRUE(Vs::Scene::GraphicsOptionGroup::get()->selectClosestItemOnly());
}

TEST_F(SelectionFilters, OfAllKindsAClickTakesTheComponentAndOneMoreItsPart)
{
    EXPECT_EQ(clicked(L"Box3"), L"Box3:1");
    clickAt(placeOf(L"Box3") + QPoint(8, 0));
    ASSERT_EQ(selected().size(), 1u);
    const auto* part = Vs::cast<Vs::LogicalSelection>(selected().selections().front().get());
    EXPECT_EQ(part->path().leaf, Vs::ObjectPath::Leaf::Face);
    // When adding, clicks continue with parts; elsewhere a click starts with the component again.
    clickAt(placeOf(L"Box2"), Qt::LeftButton, Qt::ControlModifier);
    ASSERT_EQ(selected().size(), 2u);
    EXPECT_EQ(Vs::cast<Vs::LogicalSelection>(selected().selections().back().get())->path().leaf,
              Vs::ObjectPath::Leaf::Face);
    EXPECT_EQ(clicked(L"Box3"), L"Box3:1");
    clickAt(placeOf(L"Box3") + QPoint(8, 0), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_TRUE(selected().empty()) << "with Ctrl the component is taken out again";
    clickAt(placeOf(L"Box3"));
    QTest::keyClick(canvas, Qt::Key_Escape);
    EXPECT_TRUE(selected().empty());
    // So does one just beside it, at the edge that is its silhouette.
    const Vs::Scene::Projection projection(*camera(), canvas->width(), canvas->height());
    const GkPoint3d corner = projection.worldToScreen({13, 0, 1.5});
    clickAt({int(std::lround(corner.x)) + 2, int(std::lround(canvas->height() - corner.y))});
    ASSERT_EQ(selected().size(), 1u);
    EXPECT_EQ(pathOf(*selected().selections().front()), L"Box3:1");
}

TEST_F(SelectionFilters, TheSolidsOfOnePartAreToldApartOnceTheUserWantsIt)
{
    answer(L"Design.Edit Box3");
    answer(L"Design.Box 3 3 3 16,0,0");
    answer(L"VuCommands.ReturnToEnvironmentCmd");
    camera()->fit(fragment()->bounds());
    settle();
    const QPoint second = placeOf(L"Box3/Solid2");
    const auto climb = [&] {
        clickAt(second, Qt::LeftButton, Qt::ControlModifier | Qt::ShiftModifier);
        return selected().empty() ? L"" : pathOf(*selected().selections().back());
    };
    EXPECT_EQ(climb(), L"Box3:1");
    selected().clear();
    choose("Solids");
    EXPECT_EQ(climb(), L"Box3:1/Body1/Solid2");
    EXPECT_EQ(selected().size(), 1u);
    EXPECT_EQ(climb(), L"Box3:1");
    choose("Faces");
    choose("Components");
    EXPECT_EQ(clicked(L"Box3/Solid1"), L"Box3:1/Body1/Solid1");
    EXPECT_EQ(clicked(L"Box3/Solid2"), L"Box3:1/Body1/Solid2");
    EXPECT_EQ(clicked(L"Box2"), L"Box2:1/Body1") << "one solid alone is the body";
    choose("Bodies");
    selected().clear();
    // To the left: what it touches.
    QTest::mouseMove(canvas, second + QPoint(5, 5));
    QTest::mousePress(canvas, Qt::LeftButton, Qt::ShiftModifier, second + QPoint(5, 5));
    QTest::mouseMove(canvas, second - QPoint(5, 5));
    QTest::mouseRelease(canvas, Qt::LeftButton, Qt::ShiftModifier, second - QPoint(5, 5));
    settle();
    ASSERT_EQ(selected().size(), 1u);
    EXPECT_EQ(pathOf(*selected().selections().front()), L"Box3:1/Body1/Solid2");
}

TEST_F(SelectionFilters, AreKeptForTheRestingCommandAndForgottenWithATool)
{
    choose("Faces");
    answer(L"VuCommands.SelectCmd");
    EXPECT_FALSE(enabled(L"Faces"));
    EXPECT_EQ(Vs::SelectionOptionGroup::get()->disabledCategories(), (Texts{L"Faces", L"Solids"}));
    EXPECT_TRUE(activeSession()->commandManager()->activeCommand()->commandDefinition()->readonly());

    answer(L"Commands.Start LookAtCommand");
    EXPECT_TRUE(enabled(L"Faces")) << "a tool begins with all kinds";
    choose("Edges");
    EXPECT_EQ(activeSession()->commandManager()->activeCommand()->commandDefinition()->id(), L"LookAtCommand")
        << "the tool goes on";
    EXPECT_FALSE(enabled(L"Edges"));
    answer(L"Commands.Cancel");
    EXPECT_TRUE(enabled(L"Edges"));
    EXPECT_FALSE(enabled(L"Faces"));
}

TEST_F(SelectionFilters, ARecordingHoldsWhatWasChosen)
{
    Vs::Status status;
    ASSERT_TRUE(
        Vs::TranscriptMgr::get()->startRecording(scratch(L"filters.txt"), Vs::kTextTranscript, status));
    choose("Faces");
    Vs::TranscriptMgr::get()->endRecording();
    const std::string line = TestSupport::contentOf(scratch(L"filters.txt"));
    EXPECT_NE(line.find("VuCommands.SelectionFilterCmd selectVisible,Vertices,Edges,Bodies,Components"),
              std::string::npos)
        << line;
    choose("Select All");
    answer(L"VuCommands.SelectionFilterCmd Vertices,Edges,Bodies,Components");
    EXPECT_FALSE(enabled(L"Faces"));
    EXPECT_FALSE(Vs::Scene::GraphicsOptionGroup::get()->selectClosestItemOnly());
    EXPECT_FALSE(marks()[L"Faces"]);
    answer(L"VuCommands.SelectionFilterCmd selectVisible,Vertices,Edges,Faces,Bodies,Components");
    EXPECT_TRUE(enabled(L"Faces"));
    EXPECT_FALSE(enabled(L"Solids")) << "older recordings don't know them";
    answer(L"VuCommands.SelectionFilterCmd selectVisible,Vertices,Edges,Faces,Solids,Bodies,Components");
    EXPECT_TRUE(marks()[L"Select All"]);
    EXPECT_TRUE(Vs::Scene::GraphicsOptionGroup::get()->selectClosestItemOnly());
}

} // namespace
