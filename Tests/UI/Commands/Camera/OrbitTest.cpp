#include "Server/Scene/Camera.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/InteractionEvents.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Commands/Camera/OrbitCmd.h"

#include <cmath>
#include <memory>

using namespace Vu;
using namespace Vu::Commands;
using CommandsTests::stand;

namespace {

class OrbitTest : public CommandsTests::Navigation
{
protected:
    static ListControl* entry()
    {
        return Vs::cast<ListControl>(
            CommandDefinitionMgr::get()->findCommandDefinitionById(L"OrbitCommand")->inputControl());
    }
    static OrbitCmd* orbit() { return Vs::cast<OrbitCmd>(activeCommand()); }
    /// The distance from the middle of a point at half the canvas's smaller side.
    static int pixels(double part) { return int(std::lround(part * canvas()->height() / 2)); }
    /// Over the model and the orbicon.
    static bool reticleShows(const GraphicsView* over = view()) { return over->viewFragments().size() > 2; }
    static void choose(const std::wstring& key)
    {
        for (Info* item : entry()->items())
            if (item->key() == key)
                entry()->selectedItem(item, true);
        Application::get()->flushDeferredTasks();
    }
};

TEST_F(OrbitTest, TheZonesOfTheReticle)
{
    start(L"FreeOrbitCommand");
    ASSERT_TRUE(orbit());
    const OrbitReticle& reticle = orbit()->reticle();
    ASSERT_TRUE(reticle.shown());
    const auto zone = [&](double x, double y) {
        return reticle.zone({canvas()->width() / 2 + pixels(x), canvas()->height() / 2 + pixels(y)});
    };
    EXPECT_EQ(zone(0, 0), kInCircle);
    EXPECT_EQ(zone(0.4, -0.4), kInCircle);
    EXPECT_EQ(zone(0, 0.75), kOnVerticalTick);
    EXPECT_EQ(zone(0, -0.75), kOnVerticalTick);
    EXPECT_EQ(zone(0.75, 0.02), kOnHorizontalTick);
    EXPECT_EQ(zone(-0.75, 0), kOnHorizontalTick);
    EXPECT_EQ(zone(0.75, 0.1), kInRing);
    EXPECT_EQ(zone(0, 0.9), kInRing);
    EXPECT_EQ(zone(0.6, 0.6), kInRing);
    EXPECT_EQ(zone(1.05, 0), kOutside);
    EXPECT_EQ(zone(0.8, 0.8), kOutside);
}

TEST_F(OrbitTest, WhereADragBeginsDecidesAboutWhatTheViewTurns)
{
    start(L"FreeOrbitCommand");
    const GkVector3d right = camera()->right(), up = camera()->screenUp(), along = camera()->direction();
    const auto from = [&](int x, int y) {
        move(x, y);
        drag(kLeftButton, x, y, x + 23, y + 17);
    };
    from(0, pixels(0.75)); // The vertical tick: about the screen's horizontal axis.
    EXPECT_TRUE(camera()->right().isEqualTo(right, {1e-6, 1e-9}));
    EXPECT_FALSE(camera()->direction().isEqualTo(along));
    answer(L"VuCommands.CancelCmd");

    start(L"FreeOrbitCommand");
    camera()->look(along, up);
    from(pixels(0.75), 0);
    EXPECT_TRUE(camera()->screenUp().isEqualTo(up, {1e-6, 1e-9}));
    EXPECT_FALSE(camera()->direction().isEqualTo(along));
    answer(L"VuCommands.CancelCmd");

    start(L"FreeOrbitCommand");
    camera()->look(along, up);
    from(pixels(0.6), pixels(0.6)); // The ring: about the line of sight.
    EXPECT_TRUE(camera()->direction().isEqualTo(along, {1e-6, 1e-9}));
    EXPECT_FALSE(camera()->screenUp().isEqualTo(up));
    answer(L"VuCommands.CancelCmd");

    start(L"FreeOrbitCommand");
    camera()->look(along, up);
    from(0, 0);
    EXPECT_FALSE(camera()->direction().isEqualTo(along));
    EXPECT_TRUE(reticleShows());
}

TEST_F(OrbitTest, ADragFromOutsideTurnsNothingAndLeavesTheTool)
{
    start(L"ConstrainedOrbitCommand");
    EXPECT_TRUE(reticleShows());
    const std::string before = stand(*camera());
    const int outside = canvas()->width() / 2 - 5;
    move(outside, 0);
    press(kLeftButton, outside, 0);
    move(outside - 60, 40);
    EXPECT_FALSE(reticleShows());
    release(kLeftButton, outside - 60, 40);
    EXPECT_EQ(stand(*camera()), before);
    EXPECT_EQ(activeKey(), L"");
    EXPECT_FALSE(reticleShows());

    start(L"ConstrainedOrbitCommand");
    move(outside, 0);
    click(kLeftButton, outside, 0);
    EXPECT_EQ(activeKey(), L"");
    EXPECT_FALSE(reticleShows());
}

TEST_F(OrbitTest, AClickBringsThePlaceToTheMiddleOnTheModelAndBesideIt)
{
    start(L"FreeOrbitCommand");
    const GkVector3d along = camera()->direction();
    click(kLeftButton, pixels(0.3), pixels(0.2));
    EXPECT_EQ(activeKey(), L"FreeOrbitCommand");
    // On the face of the box that faces the camera.
    EXPECT_NEAR(camera()->target().y, 0, 1e-4);
    EXPECT_TRUE(camera()->direction().isEqualTo(along));

    camera()->zoom(0.2);
    const double depth = camera()->target().y;
    const GkPoint3d place = under(pixels(0.5), pixels(-0.3));
    click(kLeftButton, pixels(0.5), pixels(-0.3));
    EXPECT_TRUE(camera()->target().isEqualTo(place, {1e-4, 1e-9}));
    EXPECT_NEAR(camera()->target().y, depth, 1e-4);
}

TEST_F(OrbitTest, ChoosingAFlavourStartsItAndMakesItTheOneOfTheMouse)
{
    ASSERT_TRUE(entry());
    EXPECT_EQ(entry()->items().size(), 2u);
    choose(L"FreeOrbitCommand");
    ASSERT_TRUE(orbit());
    EXPECT_FALSE(UIBaseOptionGroup::get()->useContrainedOrbit());
    EXPECT_TRUE(entry()->active());
    answer(L"VuCommands.CancelCmd");
    EXPECT_FALSE(entry()->active());
    press(kRightButton, 0, 0);
    EXPECT_EQ(activeKey(), L"FreeOrbitCommand");
    EXPECT_FALSE(reticleShows());
    release(kRightButton, 0, 0);
    choose(L"ConstrainedOrbitCommand");
    EXPECT_TRUE(UIBaseOptionGroup::get()->useContrainedOrbit());
    answer(L"VuCommands.CancelCmd");

    // A click on the entry itself starts the flavour in use, which is checked in the list.
    for (const bool constrained : {false, true}) {
        UIBaseOptionGroup::get()->useContrainedOrbit(constrained);
        CommandContext context = CommandContext::activeContext();
        CommandDefinitionMgr::get()->findCommandDefinitionById(L"OrbitCommand")->updateInputControl(&context);
        ASSERT_TRUE(entry()->selectedItem());
        EXPECT_EQ(entry()->selectedItem()->key(),
                  constrained ? L"ConstrainedOrbitCommand" : L"FreeOrbitCommand");
        entry()->clicked();
        Application::get()->flushDeferredTasks();
        ASSERT_TRUE(orbit());
        EXPECT_EQ(UIBaseOptionGroup::get()->useContrainedOrbit(), constrained);
        answer(L"VuCommands.CancelCmd");
    }
    // Without a flavour there is nothing to start.
    start(L"OrbitCommand");
    EXPECT_EQ(activeKey(), L"");
}

TEST_F(OrbitTest, TheWrongButtonTurnsNothing)
{
    start(L"FreeOrbitCommand");
    const std::string before = stand(*camera());
    // An event of the right button whose press the agent doesn't see.
    OrbitCmd* tool = orbit();
    MouseEvent right(canvas(), {kRightButton, 0, 100, 100, 0});
    tool->mouseDragBegin(&right);
    tool->mouseDrag(&right);
    EXPECT_EQ(stand(*camera()), before);
}

TEST_F(OrbitTest, APassiveOrbitTurnsAboutThePivotIfThereIsOne)
{
    const GkPoint3d corner(20, 20, 20);
    UIBaseOptionGroup::get()->pivotUnderPointer(false);
    camera()->look({1, 1, -1}, {0, 0, 1});
    camera()->fit(view()->modelFragment()->bounds());
    camera()->pivot(corner);
    camera()->pivotEnabled(true);
    const auto onScreen = [&] {
        return Vs::Scene::Projection(*camera(), canvas()->width(), canvas()->height()).worldToScreen(corner);
    };
    const GkPoint3d before = onScreen();
    drag(kRightButton, 0, 0, 90, 30);
    EXPECT_TRUE(onScreen().isEqualTo(before, {1e-6, 1e-9}));
    UIBaseOptionGroup::get()->cameraPivotEnabled(false);
    drag(kRightButton, 0, 0, 90, 30);
    EXPECT_FALSE(onScreen().isEqualTo(before, {1, 1e-9}));
}

TEST_F(OrbitTest, APassiveOrbitMakesWhatLiesUnderThePointerItsPivot)
{
    camera()->look({1, 1, -1}, {0, 0, 1});
    camera()->fit(view()->modelFragment()->bounds());
    const auto projection = [] {
        return Vs::Scene::Projection(*camera(), canvas()->width(), canvas()->height());
    };
    const auto turnAt = [&](int x, int y) {
        press(kRightButton, x, y);
        move(x + 4, y);
        const GkPoint3d pivot = camera()->pivot();
        const GkPoint3d before = projection().worldToScreen(pivot);
        move(x + 120, y + 40);
        EXPECT_EQ(camera()->pivotEnabled(),
                  projection().worldToScreen(pivot).isEqualTo(before, {1e-6, 1e-9}));
        release(kRightButton, x + 120, y + 40);
        return pivot;
    };
    const GkPoint3d top = turnAt(20, -120);
    EXPECT_NEAR(top.z, 20, 1e-4);
    camera()->look({1, 1, -1}, {0, 0, 1});
    camera()->fit(view()->modelFragment()->bounds());
    EXPECT_LT(turnAt(20, 150).z, 19);
    EXPECT_TRUE(camera()->pivotEnabled());
    // Beside the model it stays, unless it is no longer visible.
    camera()->zoom(0.3);
    const int beside = canvas()->width() / 2 - 130;
    const GkPoint3d kept = camera()->pivot();
    EXPECT_TRUE(turnAt(-beside, 0).isEqualTo(kept));
    EXPECT_TRUE(camera()->pivotEnabled());
    camera()->dolly(camera()->right() * (5 * camera()->extentsWidth()));
    turnAt(-beside, 0);
    EXPECT_FALSE(camera()->pivotEnabled());

    // Showing the whole model gives up the pivot, and nothing else does.
    camera()->look({1, 1, -1}, {0, 0, 1});
    start(L"FitCommand");
    turnAt(20, -120);
    answer(L"Camera.ZoomIn");
    EXPECT_TRUE(camera()->pivotEnabled());
    start(L"FitCommand");
    EXPECT_FALSE(camera()->pivotEnabled());
    camera()->pivotEnabled(true);
    answer(L"NamedView.RestoreCamera Home");
    EXPECT_FALSE(camera()->pivotEnabled());

    UIBaseOptionGroup::get()->pivotUnderPointer(false);
    turnAt(20, -120);
    EXPECT_FALSE(camera()->pivotEnabled());
}

TEST_F(OrbitTest, TheStartAndTheEndOfAnInteractionGoTogether)
{
    class Count : public InteractionEventSite
    {
    public:
        Count() { InteractionEventSource::get()->subscribe(this); }
        ~Count() override { InteractionEventSource::get()->unsubscribe(this); }
        void startInteraction(InteractionEvent*) override { ++starts; }
        void endInteraction(InteractionEvent*) override { ++ends; }
        int starts = 0, ends = 0;
    } count;
    drag(kRightButton, 0, 0, 50, 50);
    drag(kMiddleButton, 0, 0, 50, 50);
    start(L"FreeOrbitCommand");
    drag(kLeftButton, 0, 0, 50, 50);
    answer(L"VuCommands.CancelCmd");
    EXPECT_EQ(count.starts, 3);
    EXPECT_EQ(count.ends, 3);
    click(kRightButton, 0, 0);
    EXPECT_EQ(count.starts, 3);
    // Another button, or the end of the tool, cancels the drag.
    start(L"FreeOrbitCommand");
    press(kLeftButton, 0, 0);
    move(50, 50);
    press(kMiddleButton, 50, 50);
    EXPECT_EQ(count.ends, count.starts);
    release(kMiddleButton, 50, 50);
    release(kLeftButton, 50, 50);
    press(kLeftButton, 0, 0);
    move(50, 50);
    answer(L"VuCommands.CancelCmd");
    EXPECT_EQ(count.starts, 5);
    EXPECT_EQ(count.ends, 5);
    release(kLeftButton, 50, 50);
}

TEST_F(OrbitTest, ADragThatAnotherButtonBreaksOffSwallowsNoClick)
{
    for (const bool leftComesUpFirst : {true, false}) {
        start(L"FreeOrbitCommand");
        press(kLeftButton, 0, 0);
        move(20, 0);
        press(kMiddleButton, 20, 0);
        move(30, 10);
        release(leftComesUpFirst ? kLeftButton : kMiddleButton, 30, 10);
        const std::string before = stand(*camera());
        release(leftComesUpFirst ? kMiddleButton : kLeftButton, 30, 10);
        // The release doesn't count as a click that centres the place.
        EXPECT_EQ(stand(*camera()), before) << leftComesUpFirst;
        ASSERT_TRUE(orbit());
        EXPECT_TRUE(reticleShows());
        move(pixels(1.9), 0);
        click(kLeftButton, pixels(1.9), 0);
        EXPECT_FALSE(orbit()) << leftComesUpFirst;
    }
}

TEST_F(OrbitTest, InASplitViewToolsWorkInTheViewThatTheUserIsIn)
{
    GraphicsView* const first = view();
    GraphicsView* const second = activeSession()->createView();
    GraphicsCanvas beside;
    beside.view(second, false, false);
    start(L"FreeOrbitCommand");
    EXPECT_TRUE(reticleShows(first));
    SplitViewMgr::get()->activeCanvas(&beside);
    ASSERT_EQ(view(), second);
    const std::string before = stand(*first->modelFragment()->camera());
    move(0, 0);
    EXPECT_FALSE(reticleShows(first));
    EXPECT_TRUE(reticleShows(second));
    const std::string start = stand(*camera());
    drag(kLeftButton, 0, 0, 60, 30);
    EXPECT_NE(stand(*camera()), start);
    camera()->zoom(5);
    doubleClick(kMiddleButton, 0, 0);
    scroll(-120, 50, 50);
    EXPECT_EQ(stand(*first->modelFragment()->camera()), before);
    answer(L"VuCommands.CancelCmd");
    beside.view(nullptr, false, false);
    SplitViewMgr::get()->activeCanvas(first->canvas());
}

TEST_F(OrbitTest, ClosingTheDocumentUnderTheToolLeavesNothingBehind)
{
    start(L"FreeOrbitCommand");
    answerBoxes(1);
    answer(L"Document.CloseAll");
    EXPECT_EQ(activeCommand(), nullptr);
    answer(L"Design.New");
    EXPECT_FALSE(reticleShows());
}

} // namespace
