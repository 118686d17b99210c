// The context menus in a view: what they offer, and what they are about.

#include "Server/Base/Strings.h"
#include "Server/Scene/Camera.h"
#include "Tests/UI/Commands/InCanvas.h"
#include "UI/Base/Command/ColourCommandInput.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/View/AutoCamViewFragment.h"
#include "UI/Base/View/TransitionMgr.h"

#include <QColorDialog>
#include <QToolButton>

#include <cmath>

namespace {

/// The boxes are seen from the front; Box3, of 3 mm, is at (10, 0, 0).
class ContextMenuTest : public CommandsTests::InCanvas
{
protected:
    QPoint seen(const GkPoint3d& place) const
    {
        const Vs::Scene::Projection projection(*camera(), canvas->width(), canvas->height());
        const GkPoint3d shown = projection.worldToScreen(place);
        return {int(std::lround(shown.x)), int(std::lround(canvas->height() - shown.y))};
    }
    static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    static QAction* entry(const QMenu& menu, const char* title)
    {
        for (QAction* action : menu.actions())
            if (titleOf(*action) == QLatin1String(title))
                return action;
        ADD_FAILURE() << "no entry " << title;
        return nullptr;
    }
    static QStringList titlesOf(const QMenu& menu)
    {
        QStringList titles;
        for (const QAction* action : menu.actions())
            if (!action->isSeparator())
                titles << titleOf(*action);
        return titles;
    }
    /// Enters the submenu of the open menu, and presses Enter on an entry; by keys.
    static void choose(const char* inner, const char* title)
    {
        QMenu* outer = menu();
        ASSERT_TRUE(outer);
        QAction* way = entry(*outer, inner);
        ASSERT_TRUE(way && way->menu());
        outer->setActiveAction(way);
        settle();
        QAction* wanted = entry(*way->menu(), title);
        ASSERT_TRUE(wanted && wanted->isEnabled());
        way->menu()->setActiveAction(wanted);
        QTest::keyClick(way->menu(), Qt::Key_Return);
        settle();
    }
    static std::wstring running()
    {
        const Vu::CommandBase* command = activeSession()->commandManager()->activeCommand();
        return command ? command->commandDefinition()->id() : std::wstring();
    }
    static std::wstring selectedPath()
    {
        const auto& all = selected().selections();
        return all.size() == 1
                   ? Vs::pathText(Vs::cast<Vs::LogicalSelection>(all.front().get())->path(), *asset())
                   : std::wstring();
    }
};

TEST_F(ContextMenuTest, APartOffersWhatIsDoneWithPartsAndTheEdgeAndFaceThatLieThere)
{
    clickAt(seen({10, 0, 1.5}), Qt::RightButton);
    ASSERT_TRUE(menu());
    const QStringList titles = titlesOf(*menu());
    for (const char* title :
         {"Move", "Colour", "Measure", "Hide", "Export...", "Cut", "Delete", "Edge", "Face"})
        EXPECT_TRUE(titles.contains(QLatin1String(title))) << title;
    EXPECT_FALSE(titles.contains("Component")) << "that is what it is about";
    EXPECT_FALSE(titles.contains("Fillet"));
    EXPECT_EQ(titles.count("Measure"), 1);
    EXPECT_EQ(selectedPath(), L"Box3:1");
    choose("Edge", "Fillet");
    EXPECT_EQ(running(), L"FilletCommand");
    const auto* inputs = activeSession()->commandManager()->activeCommand()->commandInputSet();
    EXPECT_EQ(inputs->findInput(L"Edges")->valueAsString().rfind(L"Box3:1/Body1/Edge", 0), 0u);
    answer(L"Commands.Cancel");
}

TEST_F(ContextMenuTest, AMenuWithinItSelectsWhatItIsAboutForAsLongAsItIsOpen)
{
    clickAt(placeOf(L"Box3"), Qt::RightButton);
    ASSERT_TRUE(menu());
    QMenu* outer = menu();
    outer->setActiveAction(entry(*outer, "Face"));
    settle();
    EXPECT_EQ(selectedPath().rfind(L"Box3:1/Body1/Face", 0), 0u);
    outer->setActiveAction(entry(*outer, "Hide"));
    settle();
    EXPECT_EQ(selectedPath(), L"Box3:1");
    // Looking at a face turns the camera straight towards it.
    camera()->look({1, 1, -1}, {0, 0, 1});
    outer->setActiveAction(nullptr);
    choose("Face", "Look At");
    EXPECT_TRUE(UiTests::becomes([] { return !Vu::TransitionMgr::get()->playing(); }));
    EXPECT_TRUE(camera()->direction().isEqualTo({0, 1, 0}, {1e-6, 1e-6}));
}

TEST_F(ContextMenuTest, APartIsColouredByItsMenuWhichKeepsTheColoursThatWereMixedLast)
{
    const auto colour = [&] {
        Vs::Status status;
        const Vs::Component* box = Vs::resolvePath(path(L"Box3"), *asset(), status);
        return box->colour ? Vu::ColourCommandInput::codeOf(*box->colour) : std::wstring();
    };
    const unsigned before = steps();
    clickAt(placeOf(L"Box3"), Qt::RightButton);
    choose("Colour", "Green");
    EXPECT_EQ(colour(), L"#3f9b46");
    EXPECT_EQ(steps(), before + 1);
    // A colour mixed in the dialog is among the others from then on.
    clickAt(placeOf(L"Box3"), Qt::RightButton);
    choose("Colour", "More...");
    auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->currentColor().name().toStdString(), "#3f9b46");
    dialog->setCurrentColor(QColor(0x12, 0x34, 0x56));
    dialog->accept();
    settle();
    EXPECT_EQ(colour(), L"#123456");
    answer(L"VuCommands.UndoCmd");
    clickAt(placeOf(L"Box2"), Qt::RightButton);
    choose("Colour", "#123456");
    EXPECT_EQ(colour(), L"#3f9b46") << "of the other one";
    // The tool's own field offers the same.
    selected().clear();
    answer(L"Commands.Start ColourCommand Objects=Box3");
    settle();
    QToolButton* field = nullptr;
    for (auto* each : tree->window()->findChildren<QToolButton*>("colour"))
        if (each->isVisible() && each->text() == "Red")
            field = each;
    ASSERT_TRUE(field);
    field->menu()->popup(field->mapToGlobal(QPoint()));
    ASSERT_EQ(menu(), field->menu());
    EXPECT_TRUE(titlesOf(*menu()).contains("#123456"));
    entry(*menu(), "None of Its Own")->trigger();
    menu()->close();
    answer(L"Commands.Commit");
    EXPECT_EQ(colour(), L"");
}

TEST_F(ContextMenuTest, KeysPointAtTheNextThingThatAClickWouldTakeAndClickIt)
{
    selected().clear();
    const auto key = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        canvas->setFocus();
        QTest::keyClick(canvas, key, modifiers);
        settle();
    };
    const auto pointed = [] {
        std::wstring paths;
        for (const auto& each : activeSession()->selectionManager()->highlightSet().selections())
            paths += Vs::pathText(Vs::cast<Vs::LogicalSelection>(each.get())->path(), *asset()) + L' ';
        return paths;
    };
    const QPoint onTheLeft(5, placeOf(L"Box3").y());
    QTest::mouseMove(canvas, placeOf(L"Box2"));
    settle();
    key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(pointed(), L"Box3:1 ");
    EXPECT_TRUE(selected().empty());
    key(Qt::Key_Space, {});
    EXPECT_EQ(selectedComponents(), (CommandsTests::Texts{L"Box3:1"}));
    // The faces and edges of the selection are offered as well.
    key(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(pointed().rfind(L"Box3:1/Body1/", 0), 0u) << Vs::Strings::narrow(pointed());
    key(Qt::Key_Space, {});
    EXPECT_EQ(selectedPath().rfind(L"Box3:1/Body1/", 0), 0u);

    select({L"Box3"});
    QTest::mouseMove(canvas, onTheLeft);
    settle();
    key(Qt::Key_Right, Qt::ControlModifier);
    key(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(selected().size(), 2u) << "it came to the other one";
    // Where there is nothing, the pointer stays.
    QTest::mouseMove(canvas, onTheLeft + QPoint(2, 0));
    settle();
    key(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(pointed(), L"");
}

TEST_F(ContextMenuTest, ItsKeyOpensTheMenuOfThePlaceAtWhichThePointerWasLast)
{
    QTest::mouseMove(canvas, placeOf(L"Box3"));
    settle();
    canvas->setFocus();
    QTest::keyClick(canvas, Qt::Key_Menu);
    settle();
    ASSERT_TRUE(menu());
    EXPECT_EQ(selectedPath(), L"Box3:1");
    EXPECT_EQ(entry(*menu(), "Hide")->text().count(u'\t'), 0) << "its key would be read with its name";
    menu()->close();
}

TEST_F(ContextMenuTest, BesideEverythingItIsAboutTheView)
{
    selected().clear();
    clickAt(nowhere(), Qt::RightButton);
    ASSERT_TRUE(menu());
    const QStringList titles = titlesOf(*menu());
    for (const char* title : {"Paste", "Home", "Fit", "Look From", "Visual Style", "Select All"})
        EXPECT_TRUE(titles.contains(QLatin1String(title))) << title;
    EXPECT_FALSE(entry(*menu(), "Paste")->isEnabled()) << "nothing was copied";
    EXPECT_FALSE(titles.contains("Delete"));
    entry(*menu(), "Select All")->trigger();
    menu()->close();
    settle();
    EXPECT_EQ(selected().size(), 3u);
}

TEST_F(ContextMenuTest, TheCubeOffersItsSidesAndAHomeThatIsKeptWithTheModel)
{
    const auto cube = [&] {
        for (Vs::Scene::ViewFragment* fragment : graphicsCanvas->view()->viewFragments())
            if (const auto* found = Vs::cast<Vu::AutoCamViewFragment>(fragment))
                return QPoint(int(found->place().left + found->place().size / 2),
                              int(found->place().top + found->place().size / 2));
        return QPoint();
    };
    const unsigned before = steps();
    clickAt(cube(), Qt::RightButton);
    ASSERT_TRUE(menu());
    EXPECT_TRUE(titlesOf(*menu()).contains("Projection"));
    entry(*menu(), "Set Current View as Home")->trigger();
    menu()->close();
    settle();
    EXPECT_EQ(steps(), before + 1);
    answer(L"Commands.Start TopViewCommand");
    answer(L"Commands.Start HomeViewCommand");
    EXPECT_TRUE(UiTests::becomes([] { return !Vu::TransitionMgr::get()->playing(); }));
    EXPECT_TRUE(camera()->direction().isEqualTo({0, 1, 0}));
    answer(L"NamedView.RestoreCamera Top");
    answer(L"NamedView.RestoreCamera Home");
    EXPECT_TRUE(UiTests::becomes([] { return !Vu::TransitionMgr::get()->playing(); }));
    EXPECT_TRUE(camera()->direction().isEqualTo({0, 1, 0}));
    answer(L"VuCommands.UndoCmd");
    answer(L"Commands.Start HomeViewCommand");
    EXPECT_TRUE(UiTests::becomes([] { return !Vu::TransitionMgr::get()->playing(); }));
    EXPECT_TRUE(camera()->direction().isEqualTo(GkVector3d(-1, 1, -1).normal()));
}

} // namespace
