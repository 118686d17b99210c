#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/CommonData/NamedViewSelection.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Transaction.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Geometry/Near.h"
#include "Tests/UI/Commands/InBrowser.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/NamedViewCmds.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTreeView>

#include <set>

using namespace Vu;
using namespace Vu::Commands;
using CommandsTests::stand;
using namespace Vs::NameView;
using Vs::Scene::Camera;

namespace {

using Names = std::vector<std::wstring>;

class NamedViewCommands : public CommandsTests::Navigation
{
protected:
    static Names ownNames()
    {
        Names names;
        for (const auto& view : namedViewsOfAsset()->views())
            if (!view->isFixed())
                names.push_back(view->name());
        return names;
    }
    static void select(std::initializer_list<std::wstring> names)
    {
        Vs::SelectionSet& set = activeSession()->selectionManager()->selectionSet();
        set.clear();
        for (const std::wstring& name : names)
            set.add(Vs::StrongRef<Vs::Selection>(
                new NamedViewSelection(ActiveAssetUtils::asset(), namedViewsOfAsset()->find(name))));
    }
    static void selectFolder()
    {
        activeSession()->selectionManager()->selectionSet().clear();
        activeSession()->selectionManager()->selectionSet().add(
            Vs::StrongRef<Vs::Selection>(new NamedViewsSelection(namedViewsOfAsset())));
    }
    /// The keys of the named views' definitions in the context menu.
    static std::set<std::wstring> inMenu()
    {
        std::set<std::wstring> keys;
        for (const wchar_t* key : {L"AddNamedViewCommand", L"RemoveNamedViewCommand", L"RestoreCameraCommand",
                                   L"UpdateNamedViewCameraCommand", L"UpdateNamedViewNameCommand"})
            if (CommandDefinitionMgr::get()->findCommandDefinitionById(key)->addToContextMenu())
                keys.insert(key);
        return keys;
    }
};

TEST_F(NamedViewCommands, KeepAViewAndFindBackToIt)
{
    camera()->orbit(40, 20);
    camera()->zoom(1.7);
    const std::string kept = stand(*camera());
    EXPECT_EQ(AddNamedViewCmdDef::generateNamedViewName(), L"NamedView");
    EXPECT_EQ(answer(L"NamedView.AddNamedView"), L"");
    camera()->orbit(-200, 50);
    camera()->zoom(0.4);
    const std::string elsewhere = stand(*camera());
    answer(L"NamedView.RestoreCamera NamedView");
    EXPECT_EQ(stand(*camera()), kept);

    camera()->copyFrom(*namedViewsOfAsset()->find(L"Front")->camera());
    answer(L"NamedView.UpdateNamedViewCamera NamedView");
    camera()->orbit(11, 12);
    answer(L"NamedView.RestoreCamera NamedView");
    EXPECT_TRUE(isNear(camera()->direction(), {0, 1, 0}));
    EXPECT_NE(stand(*camera()), elsewhere);
}

TEST_F(NamedViewCommands, RestoringKeepsTheProjectionThatTheUserHas)
{
    answer(L"NamedView.AddNamedView");
    camera()->toggleProjection(Vs::Scene::kParallelProjection);
    const double width = camera()->extentsWidth();
    camera()->zoom(3);
    answer(L"NamedView.RestoreCamera NamedView");
    EXPECT_EQ(camera()->projection(), Vs::Scene::kParallelProjection);
    EXPECT_EQ(camera()->extentsWidth(), width);
}

TEST_F(NamedViewCommands, AStandardViewFramesWhatTheModelIsNow)
{
    answer(L"Design.Box 400 10 10");
    answer(L"NamedView.RestoreCamera Right");
    EXPECT_TRUE(isNear(camera()->direction(), {-1, 0, 0}));
    EXPECT_TRUE(isNear(camera()->screenUp(), {0, 0, 1}));
    // All of it is visible, and fills the picture's height or width as far as possible.
    const Vs::Scene::Projection projection(*camera(), 100, 100);
    double reach = 0;
    for (const GkPoint3d& corner : {GkPoint3d(400, 0, 0),
                                    {400, 10, 10},
                                    {400, 0, 10},
                                    {400, 10, 0},
                                    {0, 20, 20},
                                    {0, 0, 20},
                                    {0, 20, 0}}) {
        const GkPoint3d seen = projection.worldToScreen(corner);
        reach = std::max({reach, std::abs(seen.x - 50), std::abs(seen.y - 50)});
    }
    EXPECT_LT(reach, 50);
    EXPECT_GT(reach, 35);

    // In an empty model there is nothing to frame, and the camera is the view's own.
    answer(L"Design.New");
    camera()->zoom(5);
    answer(L"NamedView.RestoreCamera Top");
    EXPECT_TRUE(view()->modelFragment()->bounds().isEmpty());
    EXPECT_TRUE(isNear(camera()->position(), namedViewsOfAsset()->find(L"Top")->camera()->position()));
    EXPECT_EQ(camera()->extentsWidth(), namedViewsOfAsset()->find(L"Top")->camera()->extentsWidth());
}

TEST_F(NamedViewCommands, WithoutANameTakeTheOnlyOneThatIsSelected)
{
    for (int i = 0; i < 3; ++i)
        answer(L"NamedView.AddNamedView");
    const Names all = ownNames();
    answer(L"NamedView.RemoveNamedView");
    select({L"NamedView", L"NamedView1"});
    answer(L"NamedView.RemoveNamedView");
    selectFolder();
    answer(L"NamedView.RemoveNamedView");
    EXPECT_EQ(ownNames(), all);
    select({L"NamedView1"});
    camera()->orbit(30, 0);
    const std::string here = stand(*camera());
    answer(L"NamedView.UpdateNamedViewCamera");
    camera()->orbit(30, 0);
    answer(L"NamedView.RestoreCamera");
    EXPECT_EQ(stand(*camera()), here);
    answer(L"NamedView.RemoveNamedView");
    EXPECT_EQ(ownNames(), (Names{L"NamedView", L"NamedView2"}));
    // An argument takes precedence over the selection.
    select({L"NamedView"});
    answer(L"NamedView.RemoveNamedView NamedView2");
    EXPECT_EQ(ownNames(), (Names{L"NamedView"}));
    // Renaming needs both names, whatever is selected.
    answer(L"NamedView.UpdateNamedViewName Mine");
    answer(L"NamedView.UpdateNamedViewName \"\" Mine");
    EXPECT_EQ(ownNames(), (Names{L"NamedView"}));
    answer(L"NamedView.UpdateNamedViewName NamedView \"My own\"");
    EXPECT_EQ(ownNames(), (Names{L"My own"}));
}

TEST_F(NamedViewCommands, TellWhatCannotBeDone)
{
    answer(L"NamedView.AddNamedView");
    EXPECT_NE(failure(L"NamedView.RemoveNamedView Front").find(L"standard view"), std::wstring::npos);
    EXPECT_NE(failure(L"NamedView.RemoveNamedView Nowhere").find(L"Nowhere"), std::wstring::npos);
    EXPECT_NE(failure(L"NamedView.UpdateNamedViewName NamedView Home").find(L"Home"), std::wstring::npos);
    EXPECT_NE(failure(L"NamedView.UpdateNamedViewName NamedView \" \"").find(L"name"), std::wstring::npos);
    EXPECT_NE(failure(L"NamedView.UpdateNamedViewCamera Top").find(L"standard view"), std::wstring::npos);
    const std::string before = stand(*camera());
    answer(L"NamedView.RestoreCamera Nowhere");
    EXPECT_EQ(stand(*camera()), before);
    EXPECT_EQ(ownNames(), (Names{L"NamedView"}));
    answerBoxes(1);
    run(L"Document.CloseAll");
    EXPECT_FALSE(namedViewsOfAsset());
    EXPECT_EQ(AddNamedViewCmdDef::generateNamedViewName(), L"");
    for (const wchar_t* key : {L"AddNamedViewCommand", L"RemoveNamedViewCommand", L"RestoreCameraCommand"})
        EXPECT_FALSE(applicable(key));
}

TEST_F(NamedViewCommands, EachIsOneStepOfUndoAndRestoringIsNone)
{
    Vs::Asset* asset = ActiveAssetUtils::asset();
    const unsigned before = Vs::Transaction::undoSteps(asset);
    answer(L"NamedView.AddNamedView");
    answer(L"NamedView.UpdateNamedViewName NamedView Mine");
    camera()->orbit(30, 0);
    answer(L"NamedView.UpdateNamedViewCamera Mine");
    answer(L"NamedView.RestoreCamera Home");
    answer(L"NamedView.RemoveNamedView Mine");
    EXPECT_EQ(Vs::Transaction::undoSteps(asset), before + 4);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(Vs::Transaction::undo(asset));
    EXPECT_EQ(ownNames(), (Names{L"NamedView"}));
    EXPECT_TRUE(isNear(namedViewsOfAsset()->find(L"NamedView")->camera()->direction(), {0, 1, 0}));
}

TEST_F(NamedViewCommands, TheContextMenuOffersWhatTheSelectedItemCanDo)
{
    using Keys = std::set<std::wstring>;
    answer(L"NamedView.AddNamedView");
    EXPECT_EQ(inMenu(), Keys());
    selectFolder();
    EXPECT_EQ(inMenu(), (Keys{L"AddNamedViewCommand"}));
    select({L"NamedView"});
    EXPECT_EQ(inMenu(), (Keys{L"RemoveNamedViewCommand", L"UpdateNamedViewCameraCommand"}));
    select({L"Front"});
    EXPECT_EQ(inMenu(), Keys());
    select({L"NamedView", L"Front"});
    EXPECT_EQ(inMenu(), Keys());
}

TEST_F(NamedViewCommands, ThePassiveToolsOfTheMouseGoOnBeneath)
{
    start(L"PanCommand");
    answer(L"NamedView.AddNamedView");
    answer(L"NamedView.RestoreCamera Top");
    EXPECT_EQ(activeKey(), L"PanCommand");
}

class NamedViewsInTheBrowser : public CommandsTests::InBrowser<NamedViewCommands>
{
protected:
    void SetUp() override
    {
        InBrowser::SetUp();
        answer(L"NamedView.AddNamedView");
        QApplication::processEvents();
        folder = tree->model()->index(0, 0);
        tree->expand(folder);
        QApplication::processEvents();
    }

    QModelIndex item(const std::wstring& name) const { return below(folder, name); }

    QModelIndex folder;
};

TEST_F(NamedViewsInTheBrowser, AreListedAndFollowEveryChange)
{
    EXPECT_EQ(folder.data().toString(), "Named Views");
    EXPECT_EQ(tree->model()->rowCount(folder), 5);
    EXPECT_TRUE(item(L"Home").isValid());
    ASSERT_TRUE(item(L"NamedView").isValid());
    answer(L"NamedView.AddNamedView");
    click(item(L"NamedView"));
    answer(L"NamedView.UpdateNamedViewName NamedView Mine");
    EXPECT_EQ(tree->currentIndex(), item(L"Mine"));
    EXPECT_TRUE(tree->selectionModel()->isSelected(item(L"Mine")));
    answer(L"NamedView.RemoveNamedView NamedView1");
    EXPECT_TRUE(tree->selectionModel()->isSelected(item(L"Mine")));
    EXPECT_EQ(tree->model()->rowCount(folder), 5);
    answer(L"NamedView.RemoveNamedView Mine");
    EXPECT_EQ(tree->model()->rowCount(folder), 4);
    Vs::Transaction::undo(ActiveAssetUtils::asset());
    EXPECT_TRUE(item(L"Mine").isValid());
    EXPECT_TRUE(tree->isExpanded(folder));
}

TEST_F(NamedViewsInTheBrowser, ADoubleClickLooksFromThere)
{
    const std::string kept = stand(*camera());
    const auto doubleClick = [&](const std::wstring& name) {
        click(item(name));
        QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(item(name)).center());
        Application::get()->flushDeferredTasks();
    };
    doubleClick(L"Top");
    EXPECT_TRUE(isNear(camera()->direction(), {0, 0, -1}));
    doubleClick(L"NamedView");
    EXPECT_EQ(stand(*camera()), kept);
}

TEST_F(NamedViewsInTheBrowser, AreSelectedForTheCommands)
{
    click(item(L"NamedView"));
    ASSERT_TRUE(selectedNamedView());
    EXPECT_EQ(selectedNamedView()->name(), L"NamedView");
    click(folder);
    EXPECT_FALSE(selectedNamedView());
    EXPECT_TRUE(inMenu().contains(L"AddNamedViewCommand"));
    click(tree->model()->index(1, 0));
    EXPECT_TRUE(activeSession()->selectionManager()->selectionSet().empty());
}

TEST_F(NamedViewsInTheBrowser, TheirMenuRestoresUpdatesAndDeletes)
{
    EXPECT_EQ(menu(folder, "New Named View"), QStringList({"New Named View"}));
    EXPECT_EQ(ownNames(), (Names{L"NamedView", L"NamedView1"}));
    EXPECT_EQ(menu(item(L"Front"), ""), QStringList({"Restore Named View"}));
    camera()->orbit(50, 50);
    menu(item(L"Front"), "Restore Named View");
    EXPECT_TRUE(isNear(camera()->direction(), {0, 1, 0}));
    EXPECT_EQ(menu(item(L"NamedView1"), "Delete"),
              QStringList({"Restore Named View", "Delete", "Update Named View", "Rename"}));
    EXPECT_EQ(ownNames(), (Names{L"NamedView"}));
    click(item(L"NamedView"));
    QTest::keyClick(tree, Qt::Key_Delete);
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(ownNames(), Names());
    click(item(L"Front"));
    QTest::keyClick(tree, Qt::Key_Delete);
    Application::get()->flushDeferredTasks();
    EXPECT_TRUE(item(L"Front").isValid());
}

TEST_F(NamedViewsInTheBrowser, AreRenamedInPlace)
{
    const auto rename = [&](const std::wstring& name, const char* newName) {
        tree->edit(item(name));
        auto* editor = tree->viewport()->findChild<QLineEdit*>();
        ASSERT_TRUE(editor);
        editor->setText(newName);
        QTest::keyClick(editor, Qt::Key_Return);
        QApplication::processEvents();
        Application::get()->flushDeferredTasks();
        QApplication::processEvents();
    };
    rename(L"NamedView", "From below");
    EXPECT_EQ(ownNames(), (Names{L"From below"}));
    EXPECT_TRUE(item(L"From below").isValid());
    // A name already in use leaves the old one, in the model and on the screen.
    rename(L"From below", "Top");
    EXPECT_EQ(ownNames(), (Names{L"From below"}));
    EXPECT_TRUE(item(L"From below").isValid());
    EXPECT_FALSE(tree->model()->flags(item(L"Top")) & Qt::ItemIsEditable);
}

TEST(Transitions, TakeAsLongAsTheyAreTold)
{
    TransitionMgr* transitions = TransitionMgr::get();
    EXPECT_FALSE(transitions->currentTransition());
    Transition* transition = transitions->beginTransition();
    ASSERT_TRUE(transition);
    EXPECT_EQ(transitions->currentTransition(), transition);
    EXPECT_EQ(transition->period(), AnimatedTask::kPeriod);
    transitions->currentTransition()->period(800);
    EXPECT_EQ(transition->period(), 800u);
    transitions->endTransition();
    EXPECT_FALSE(transitions->currentTransition());
}

} // namespace
