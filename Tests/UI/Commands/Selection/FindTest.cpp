#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/InCanvas.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Session/BrowserManager.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/Workspace/Area.h"
#include "UI/Base/Workspace/MarkingMenuEvents.h"

using namespace Vu;
using CommandsTests::Texts;

namespace {

class Find : public CommandsTests::InCanvas
{
protected:
    static bool offered(const std::wstring& id, MarkingMenuEventSource::ESource source)
    {
        const MarkingMenuEventSource::Opening opening(source);
        return definition(id)->addToContextMenu();
    }
    static constexpr auto kBrowser = MarkingMenuEventSource::ESource::Browser;
    static constexpr auto kCanvas = MarkingMenuEventSource::ESource::Canvas;
};

TEST_F(Find, IsOfferedForOneObjectWhereItLeadsSomewhere)
{
    select({L"Box1"});
    EXPECT_TRUE(offered(L"FindInBrowser", kCanvas));
    EXPECT_FALSE(offered(L"FindInBrowser", kBrowser));
    EXPECT_TRUE(offered(L"FindInCanvas", kBrowser));
    EXPECT_TRUE(applicable(L"FindInBrowser"));
    select({L"Box1", L"Box2"});
    for (const wchar_t* id : {L"FindInBrowser", L"FindInCanvas"})
        EXPECT_FALSE(offered(id, kCanvas)) << "which of the two?";
    EXPECT_FALSE(applicable(L"FindInBrowser"));
    selected().clear();
    EXPECT_FALSE(offered(L"FindInCanvas", kBrowser));
    // A named view has no position in the scene.
    click(below(tree->model()->index(0, 0), L"Top"));
    EXPECT_EQ(selected().size(), 1u);
    EXPECT_FALSE(offered(L"FindInCanvas", kBrowser));
    menu(below(tree->model()->index(1, 0), L"Box2"), "Find in Canvas");
    EXPECT_TRUE(menuAt(placeOf(L"Box3")).contains("Find in Browser"));
}

TEST_F(Find, InTheBrowserOpensItAndMarksTheEntryWithoutAnotherSelection)
{
    tree->collapseAll();
    Area* area = WorkspaceWindow::activeWorkspaceWindow()->area(L"Browser");
    ASSERT_TRUE(area);
    area->visible(false);
    settle();
    EXPECT_FALSE(tree->isVisible());
    select({L"Box3/Body1/Face1"});
    answer(L"Commands.Start FindInBrowser");
    EXPECT_TRUE(UiTests::becomes([this] { return tree->isVisible(); }));
    const QModelIndex item = below(tree->model()->index(1, 0), L"Box3");
    EXPECT_TRUE(tree->isExpanded(item.parent()));
    EXPECT_EQ(tree->currentIndex(), item);
    EXPECT_TRUE(tree->selectionModel()->isSelected(item));
    ASSERT_EQ(selected().size(), 1u);
    EXPECT_EQ(Vs::cast<Vs::LogicalSelection>(selected().selections().front().get())->path(),
              path(L"Box3/Body1/Face1"));
    EXPECT_EQ(BrowserManager::get()->browserToAssetSession(nullptr), nullptr);
}

std::vector<double> recorded;

TEST_F(Find, InTheCanvasFramesTheObjectWithAMargin)
{
    TranscriptCameraTrigger::recorder(
        [](Vs::Scene::Camera* camera) { recorded.push_back(camera->target().x); });
    const auto framed = [&](const std::wstring& object) {
        select({object});
        answer(L"Commands.Start FindInCanvas");
        return camera()->extentsHeight();
    };
    recorded.clear();
    const double box = framed(L"Box3");
    EXPECT_EQ(recorded.size(), 1u) << "one line of the camera for each find";
    // The middle of the box, in the part of the canvas that a window leaves free.
    EXPECT_NEAR(camera()->target().x, 11.5, 1);
    EXPECT_NEAR(camera()->target().z, 1.5, 1);

    camera()->fit(BBox({10, 0, 0}, {13, 3, 3}));
    EXPECT_NEAR(box / camera()->extentsHeight(), 1.1, 1e-6);
    // The view is from the front: the top is a line there, as wide as the box.
    EXPECT_LT(framed(L"Box3/Body1/Face6"), box);
    // A vertex has no box of its own: that of the component is framed.
    EXPECT_NEAR(framed(L"Box3/Body1/Vertex1"), box, 1e-6);
    selected().clear();
    answer(L"Commands.Start FindInCanvas");
    EXPECT_NEAR(camera()->extentsHeight(), box, 1e-6);
    TranscriptCameraTrigger::recorder(nullptr);
}

} // namespace
