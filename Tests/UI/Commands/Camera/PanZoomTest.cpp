#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/HitInfo.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"

#include <cmath>
#include <limits>

using namespace Vu;
using CommandsTests::stand;

namespace {

class PanZoomTest : public CommandsTests::Navigation
{
protected:
    Vs::SelectionMgr* selection() const { return activeSession()->selectionManager(); }
    static GkPoint3d onScreen(const GkPoint3d& place)
    {
        return Vs::Scene::Projection(*camera(), canvas()->width(), canvas()->height()).worldToScreen(place);
    }
    /// The width of the box's front on the screen, in pixels.
    static double shownWidth() { return onScreen({20, 0, 0}).x - onScreen({0, 0, 0}).x; }
    /// Beside the box.
    static constexpr int kBesideX = -600, kBesideY = -380;
};

TEST_F(PanZoomTest, TheMiddleButtonPansWithAnyModifierButShiftAlone)
{
    for (const unsigned modifiers : {0u, unsigned(kControlModifier), unsigned(kAltModifier),
                                     unsigned(kShiftModifier | kControlModifier)}) {
        press(kMiddleButton, 0, 0, modifiers);
        EXPECT_EQ(activeKey(), L"PanCommand");
        EXPECT_TRUE(selection()->suspended());
        release(kMiddleButton, 0, 0, modifiers);
        EXPECT_EQ(activeKey(), L"");
        EXPECT_FALSE(selection()->suspended());
    }
    press(kMiddleButton, 0, 0, kShiftModifier);
    EXPECT_EQ(activeKey(), L"ConstrainedOrbitCommand");
    release(kMiddleButton, 0, 0, kShiftModifier);
    for (const int button : {kLeftButton, kNoMouseButton}) {
        press(button, 0, 0);
        EXPECT_EQ(activeKey(), L"");
        release(button, 0, 0);
    }
}

TEST_F(PanZoomTest, WhatWasGrabbedStaysUnderThePointerOnTheBodyAndBesideIt)
{
    for (const int projection : {Vs::Scene::kPerspectiveProjection, Vs::Scene::kParallelProjection}) {
        camera()->toggleProjection(Vs::Scene::EProjection(projection));
        camera()->look({1, 1, -1}, {0, 0, 1});
        camera()->fit(view()->modelFragment()->bounds());
        for (const int x : {10, -390}) {
            const int middleX = canvas()->width() / 2, middleY = canvas()->height() / 2;
            const auto grabbed = Vs::Scene::SceneSelection::find(
                view()->viewNode(), view()->modelFragment()->viewFragmentNode(), canvas()->width(),
                canvas()->height(), middleX + x, middleY + 20, true);
            ASSERT_TRUE(grabbed);
            EXPECT_EQ(grabbed->scenePath().empty(), x != 10);
            const GkPoint3d place =
                grabbed->hitInfo()->localToWorldTransform() * grabbed->hitInfo()->localRayPoint();
            press(kMiddleButton, x, 20);
            move(x + 90, 50);
            move(x + 60, -170);
            move(x + 140, 75);
            release(kMiddleButton, x + 140, 75);
            const GkPoint3d seen =
                Vs::Scene::Projection(*camera(), canvas()->width(), canvas()->height()).worldToScreen(place);
            EXPECT_NEAR(seen.x, middleX + x + 140, 1e-3);
            EXPECT_NEAR(seen.y, canvas()->height() - middleY - 75, 1e-3);
            camera()->fit(view()->modelFragment()->bounds());
        }
    }
}

TEST_F(PanZoomTest, APanMovesWithoutTurningOrScaling)
{
    const GkVector3d direction = camera()->direction();
    const double distance = camera()->distance(), width = camera()->extentsWidth();
    const GkPoint3d target = camera()->target();
    drag(kMiddleButton, kBesideX, kBesideY, kBesideX + 100, kBesideY);
    EXPECT_TRUE(camera()->direction().isEqualTo(direction));
    EXPECT_NEAR(camera()->distance(), distance, distance * 1e-9);
    EXPECT_EQ(camera()->extentsWidth(), width);
    // The model follows the hand: the target moves the other way.
    EXPECT_LT((camera()->target() - target).dotProduct(camera()->right()), 0);
    EXPECT_NEAR((camera()->target() - target).dotProduct(camera()->screenUp()), 0, 1e-6);
}

TEST_F(PanZoomTest, AReleaseEndsOnlyTheCommandThatItsPressStarted)
{
    press(kMiddleButton, 0, 0);
    start(L"ZoomCommand");
    EXPECT_EQ(activeKey(), L"ZoomCommand");
    release(kMiddleButton, 0, 0);
    EXPECT_EQ(activeKey(), L"ZoomCommand");
    // Another camera command may be held over the tool temporarily, and the tool is back afterwards.
    const std::string before = stand(*camera());
    press(kMiddleButton, 0, 0);
    EXPECT_EQ(activeKey(), L"PanCommand");
    move(30, 0);
    release(kMiddleButton, 30, 0);
    EXPECT_NE(stand(*camera()), before);
    EXPECT_EQ(activeKey(), L"ZoomCommand");
    EXPECT_TRUE(selection()->suspended());
    click(kLeftButton, 0, 0);
    EXPECT_EQ(activeKey(), L"");
    EXPECT_FALSE(selection()->suspended());
}

TEST_F(PanZoomTest, AClickEndsAToolAndTheReleaseOfADragDoesNot)
{
    for (const wchar_t* key : {L"PanCommand", L"ZoomCommand"}) {
        start(key);
        const std::string before = stand(*camera());
        drag(kLeftButton, 0, 0, 40, 60);
        EXPECT_NE(stand(*camera()), before);
        EXPECT_EQ(activeKey(), key);
        drag(kLeftButton, 10, 10, 40, 60);
        EXPECT_EQ(activeKey(), key);
        click(kRightButton + kMiddleButton, 0, 0);
        EXPECT_EQ(activeKey(), key);
        click(kLeftButton, 0, 0);
        EXPECT_EQ(activeKey(), L"");
    }
}

TEST_F(PanZoomTest, ADragThatAnotherButtonBreaksOffLeavesTheToolAsItWas)
{
    for (const wchar_t* key : {L"PanCommand", L"ZoomCommand"})
        for (const bool leftComesUpFirst : {true, false}) {
            start(key);
            press(kLeftButton, 0, 0);
            move(30, 30);
            press(kRightButton, 30, 30);
            EXPECT_NE(activeKey(), key);
            move(60, 30);
            release(leftComesUpFirst ? kLeftButton : kRightButton, 60, 30);
            release(leftComesUpFirst ? kRightButton : kLeftButton, 60, 30);
            EXPECT_EQ(activeKey(), key) << leftComesUpFirst;
            click(kLeftButton, 0, 0);
            EXPECT_EQ(activeKey(), L"") << leftComesUpFirst;
        }
}

TEST_F(PanZoomTest, AToolWantsItsOwnButtonAndPanNoShift)
{
    start(L"PanCommand");
    const std::string before = stand(*camera());
    drag(kLeftButton, 0, 0, 40, 60, kShiftModifier);
    EXPECT_EQ(stand(*camera()), before);
    EXPECT_EQ(activeKey(), L"PanCommand");
    click(kLeftButton, 0, 0);
    EXPECT_EQ(activeKey(), L"");
}

TEST_F(PanZoomTest, WhileATranscriptIsReplayedAToolDoesNotEndItself)
{
    start(L"ZoomCommand");
    {
        const Vs::TranscriptMgr::Replay replay;
        click(kLeftButton, 0, 0);
        EXPECT_EQ(activeKey(), L"ZoomCommand");
    }
    drag(kLeftButton, 0, 0, 10, 10); // Resets its click count.
    click(kLeftButton, 0, 0);
    EXPECT_EQ(activeKey(), L"");
}

TEST_F(PanZoomTest, ACommandThatWaitsForItsEndMayBeEndedByAnother)
{
    start(L"ZoomCommand");
    press(kLeftButton, 0, 0);
    MouseEvent up(canvas(), {kLeftButton, 0, 0, 0, 0});
    MouseEventSource::get()->fireMouseUp(&up);
    MouseEventSource::get()->fireMouseUp(&up);
    answer(L"VuCommands.CancelCmd");
    EXPECT_EQ(activeKey(), L"");
}

TEST_F(PanZoomTest, TheZoomToolScalesByTheHundredthOfAPixel)
{
    start(L"ZoomCommand");
    const double width = camera()->extentsWidth();
    press(kLeftButton, 0, 50);
    move(0, -50); // One step of 100 pixels upwards.
    EXPECT_NEAR(camera()->extentsWidth(), width / 2, width * 1e-12);
    UIBaseOptionGroup::get()->reverseZoomDirection(true);
    move(0, 0);
    EXPECT_NEAR(camera()->extentsWidth(), width, width * 1e-12);
    // Down by 100 at once would be a factor of 0, and by more a negative one.
    move(0, 100);
    move(0, 390);
    EXPECT_NEAR(camera()->extentsWidth(), width, width * 1e-12);
    release(kLeftButton, 0, 390);
}

TEST_F(PanZoomTest, OneNotchOfTheWheelIsATenthAndTheOptionTurnsItAround)
{
    const double width = shownWidth();
    scroll(120, 0, 0);
    EXPECT_NEAR(shownWidth(), width * 0.9, width * 1e-6);
    UIBaseOptionGroup::get()->reverseZoomDirection(true);
    scroll(120, 0, 0);
    EXPECT_NEAR(shownWidth(), width * 0.9 * 1.1, width * 1e-6);
    UIBaseOptionGroup::get()->reverseZoomDirection(false);
    const double kept = shownWidth();
    scroll(1200, 30, 40);
    scroll(std::numeric_limits<int>::max(), 30, 40);
    EXPECT_NEAR(shownWidth(), kept, kept * 1e-9);
    EXPECT_NEAR(onScreen({0, 0, 0}).x, canvas()->width() / 2.0 - kept / 2, 1e-6);
}

TEST_F(PanZoomTest, TheWheelKeepsWhatLiesUnderThePointerInBothProjections)
{
    for (const int projection : {Vs::Scene::kPerspectiveProjection, Vs::Scene::kParallelProjection}) {
        camera()->toggleProjection(Vs::Scene::EProjection(projection));
        camera()->look({1, 2, -1}, {0, 0, 1});
        const GkPoint3d before = under(kBesideX, kBesideY);
        for (const int delta : {120, -240, 15, -360})
            scroll(delta, kBesideX, kBesideY);
        EXPECT_LT(under(kBesideX, kBesideY).distanceTo(before), camera()->extentsWidth() * 1e-6);
    }
}

TEST_F(PanZoomTest, TheWheelApproachesADetailOfTheModelAndNeverPassesIt)
{
    for (const int projection : {Vs::Scene::kPerspectiveProjection, Vs::Scene::kParallelProjection})
        for (const GkPoint3d& corner : {GkPoint3d(0.1, 0.1, 20), {19.9, 19.9, 20}, {0.1, 0, 0.1}}) {
            SCOPED_TRACE(testing::Message() << projection << ' ' << testing::PrintToString(corner));
            camera()->toggleProjection(Vs::Scene::EProjection(projection));
            camera()->look({1, 1, -1}, {0, 0, 1});
            camera()->fit(view()->modelFragment()->bounds());
            const GkPoint3d seen = onScreen(corner);
            const int x = int(std::lround(seen.x)) - canvas()->width() / 2;
            const int y = canvas()->height() - int(std::lround(seen.y)) - canvas()->height() / 2;
            const auto hit = Vs::Scene::SceneSelection::find(
                view()->viewNode(), view()->modelFragment()->viewFragmentNode(), canvas()->width(),
                canvas()->height(), x + canvas()->width() / 2.0, y + canvas()->height() / 2.0, false);
            ASSERT_TRUE(hit);
            const GkPoint3d detail =
                hit->hitInfo()->localToWorldTransform() * hit->hitInfo()->localHitPoint();
            const GkPoint3d before = onScreen(detail);
            const double pixel = 1 / (onScreen(detail + camera()->right()).x - before.x);
            for (int notch = 0; notch < 60; ++notch) {
                scroll(-120, x, y);
                const GkPoint3d now = onScreen(detail);
                ASSERT_GT(now.z, 0) << notch;
                ASSERT_NEAR(now.x, before.x, 1) << notch;
                ASSERT_NEAR(now.y, before.y, 1) << notch;
            }
            // It has grown by as much as the wheel says.
            const double larger =
                (onScreen(detail + camera()->right() * (pixel / 100)).x - onScreen(detail).x) * 100;
            EXPECT_NEAR(larger / std::pow(1.1, 60), 1, 0.01);
        }
}

TEST_F(PanZoomTest, BeforeAHandMovesTheCameraItsTargetComesToWhatLiesThereWithoutAChangeOfThePicture)
{
    camera()->look({1, 1, -1}, {0, 0, 1});
    for (const int projection : {Vs::Scene::kPerspectiveProjection, Vs::Scene::kParallelProjection})
        for (const GkPoint3d& place : {GkPoint3d(2, 2, 20), {18, 18, 20}}) {
            camera()->toggleProjection(Vs::Scene::EProjection(projection));
            camera()->fit(view()->modelFragment()->bounds());
            const GkPoint3d corners[] = {{0, 0, 0}, {20, 20, 20}, {0, 20, 5}};
            std::vector<GkPoint3d> before;
            for (const GkPoint3d& corner : corners)
                before.push_back(onScreen(corner));
            const GkPoint3d seen = onScreen(place);
            const int x = int(seen.x) - canvas()->width() / 2;
            const int y = canvas()->height() - int(seen.y) - canvas()->height() / 2;
            // A wheel turn while a pan is held, which does nothing by itself.
            press(kMiddleButton, x, y);
            scroll(120, x, y);
            EXPECT_NEAR((camera()->target() - place).dotProduct(camera()->direction()), 0, 0.2);
            for (size_t i = 0; i < before.size(); ++i) {
                EXPECT_NEAR(onScreen(corners[i]).x, before[i].x, 1e-6);
                EXPECT_NEAR(onScreen(corners[i]).y, before[i].y, 1e-6);
            }
            release(kMiddleButton, x, y);
            // Beside the model it stays at its present depth.
            const GkPoint3d target = camera()->target();
            press(kMiddleButton, kBesideX, kBesideY);
            scroll(120, kBesideX, kBesideY);
            EXPECT_TRUE(camera()->target().isEqualTo(target));
            release(kMiddleButton, kBesideX, kBesideY);
        }
}

TEST_F(PanZoomTest, TheWheelRestsWhileAPanIsHeldUnlessAModifierIsDown)
{
    const double width = shownWidth();
    press(kMiddleButton, 0, 0);
    scroll(120, 0, 0);
    EXPECT_NEAR(shownWidth(), width, width * 1e-9);
    scroll(120, 0, 0, kControlModifier);
    EXPECT_LT(shownWidth(), width * 0.95);
    release(kMiddleButton, 0, 0);

    const double held = shownWidth();
    press(kRightButton, 0, 0);
    scroll(120, 0, 0);
    EXPECT_LT(shownWidth(), held * 0.95);
    release(kRightButton, 0, 0);
}

TEST_F(PanZoomTest, ARecordingHasTheEndOfADragAndEachStepOnlyIfItIsToBeSmooth)
{
    static std::vector<GkPoint3d> targets;
    TranscriptCameraTrigger::recorder([](Vs::Scene::Camera* camera) { targets.push_back(camera->target()); });
    for (const bool smooth : {false, true}) {
        Vs::TranscriptMgr::get()->recordSmoothCameraChange(smooth);
        targets.clear();
        drag(kMiddleButton, 0, 0, 60, 30);
        EXPECT_EQ(targets.size() > 1, smooth);
        ASSERT_FALSE(targets.empty());
        EXPECT_TRUE(targets.back().isEqualTo(camera()->target()));
        // A wheel turn is recorded as the zoom it is, before the point under the pointer is held fixed.
        targets.clear();
        const GkPoint3d before = camera()->target();
        scroll(120, kBesideX, kBesideY);
        EXPECT_EQ(targets.size(), smooth ? 1u : 0u);
        EXPECT_TRUE(targets.empty() || targets.front().isEqualTo(before));
        EXPECT_FALSE(camera()->target().isEqualTo(before));
    }
    Vs::TranscriptMgr::get()->recordSmoothCameraChange(false);
    TranscriptCameraTrigger::recorder(nullptr);
}

TEST_F(PanZoomTest, ADoubleClickOfTheMiddleButtonOrWithAltFits)
{
    const std::string fitted = stand(*camera());
    camera()->zoom(3);
    doubleClick(kMiddleButton, 5, 5);
    EXPECT_EQ(stand(*camera()), fitted);
    EXPECT_EQ(activeKey(), L"");
    camera()->zoom(3);
    doubleClick(kLeftButton, 5, 5, kAltModifier);
    EXPECT_EQ(stand(*camera()), fitted);
    camera()->zoom(3);
    doubleClick(kLeftButton, 5, 5, kAltModifier | kShiftModifier);
    EXPECT_NE(stand(*camera()), fitted);
}

TEST_F(PanZoomTest, WithoutADocumentTheMouseDoesNothing)
{
    GraphicsCanvas* const shown = canvas();
    answerBoxes(1);
    answer(L"Document.CloseAll");
    for (const int button : {kMiddleButton, kRightButton, kLeftButton}) {
        MouseEvent event(shown, {button, kAltModifier, 10, 10, 0});
        MouseEventSource::get()->fireMouseDown(&event);
        MouseEventSource::get()->fireMouseDoubleClick(&event);
        MouseEventSource::get()->fireMouseUp(&event);
        MouseEventSource::get()->fireMouseScroll(&event);
    }
    EXPECT_EQ(activeCommand(), nullptr);
}

} // namespace
