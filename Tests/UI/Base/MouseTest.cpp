#include "Server/Base/ResourceMgr.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Session/SelectionInputEvents.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Session/SpaceMouseEventSite.h"
#include "UI/Base/View/CursorController.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/View/Private/TouchNavigation.h"
#include "UI/Base/View/SceneEvaluator.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/View/ViewMgr.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QWheelEvent>
#include <QWidget>

#include <cmath>
#include <cstdlib>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Vu;

namespace {

/// Logs what it is told.
class MouseLog : public MouseEventSite
{
public:
    MouseLog() { MouseEventSource::get()->subscribe(this); }
    ~MouseLog() override { MouseEventSource::get()->unsubscribe(this); }
    void mouseDown(MouseEvent*) override { text += "down "; }
    void mouseUp(MouseEvent*) override { text += "up "; }
    void mouseMove(MouseEvent*) override { text += "move "; }
    void mouseDragBegin(MouseEvent*) override { text += "begin "; }
    void mouseDrag(MouseEvent*) override { text += "drag "; }
    void mouseDragEnd(MouseEvent*) override { text += "end "; }
    void mouseLeave(GraphicsCanvas*) override { text += "leave "; }
    std::string text;
};

class MouseTest : public UiTest
{
protected:
    MouseTest()
    {
        Vs::Asset* asset = newAsset();
        Vs::Status status;
        Vs::ModelBuilder(asset).box(30, 20, 10, {}, status);
        session = SessionMgr::get()->assetSession(asset);
        view = Vs::cast<GraphicsView>(session->viewManager()->view(GraphicsView::interfaceId()));
        canvas.view(view, true, false);
    }
    Vs::Scene::Camera* camera() const { return view->viewFragments().front()->camera(); }

    void down(int button, double x, double y, unsigned modifiers = 0)
    {
        MouseEvent event(&canvas, {button, modifiers, x, y, 0});
        MouseEventSource::get()->fireMouseDown(&event);
    }
    void move(double x, double y)
    {
        MouseEvent event(&canvas, {kNoMouseButton, 0, x, y, 0});
        MouseEventSource::get()->fireMouseMove(&event);
    }
    void up(int button, double x, double y)
    {
        MouseEvent event(&canvas, {button, 0, x, y, 0});
        MouseEventSource::get()->fireMouseUp(&event);
    }

    AssetSession* session;
    GraphicsView* view;
    GraphicsCanvas canvas;
};

} // namespace

TEST_F(MouseTest, AShakingHandClicksAndAMovingOneDrags)
{
    MouseLog log;
    down(kLeftButton, 100, 100);
    move(101, 101);
    up(kLeftButton, 101, 101);
    EXPECT_EQ(log.text, "down move up ");
    log.text.clear();
    down(kLeftButton, 100, 100);
    move(120, 100);
    move(130, 100);
    up(kLeftButton, 130, 100);
    move(140, 100);
    EXPECT_EQ(log.text, "down begin drag drag end up move ");
}

TEST_F(MouseTest, TheSitesHearOnceThatTheMouseHasLeft)
{
    MouseLog log;
    MouseEventSource::get()->mouseLeft(&canvas);
    EXPECT_EQ(log.text, "") << "it wasn't here";
    move(100, 100);
    GraphicsCanvas other;
    MouseEventSource::get()->mouseLeft(&other);
    MouseEventSource::get()->mouseLeft(&canvas);
    MouseEventSource::get()->mouseLeft(&canvas);
    EXPECT_EQ(log.text, "move leave ");
    // The cube over the view, in its upper right corner, is a different place.
    log.text.clear();
    move(100, 100);
    move(canvas.width() - 64, 64);
    move(canvas.width() - 60, 60);
    move(100, 100);
    EXPECT_EQ(log.text, "move leave move ");
}

TEST_F(MouseTest, WhatLiesUnderThePointerIsFoundInTheCanvasOfTheEvent)
{
    /// Asks what is there at each press.
    class Asker : public MouseEventSite
    {
    public:
        Asker() { MouseEventSource::get()->subscribe(this); }
        ~Asker() override { MouseEventSource::get()->unsubscribe(this); }
        void mouseDown(MouseEvent* event) override
        {
            SceneEvaluator* evaluator = SceneEvaluator::get(event->position());
            found = evaluator != nullptr;
            body = evaluator && evaluator->sceneSelection(false);
            background = evaluator && evaluator->sceneSelection(true);
        }
        bool found = false, body = false, background = false;
    } asker;
    down(kLeftButton, canvas.width() / 2.0, canvas.height() / 2.0);
    EXPECT_TRUE(asker.found && asker.body && asker.background);
    down(kLeftButton, 2, 2);
    EXPECT_TRUE(asker.found && !asker.body && asker.background);
    GraphicsCanvas empty;
    MouseEvent event(&empty, {kLeftButton, 0, 2, 2, 0});
    MouseEventSource::get()->fireMouseDown(&event);
    EXPECT_FALSE(asker.found);
}

TEST_F(MouseTest, AFragmentOverTheModelIsLeftOutOfFitsAndDoesNotHideTheModel)
{
    auto over = Vs::Scene::ViewFragment::make(nullptr, "Over");
    over->data()->supportSelectBackground(false);
    const uint64_t aimed = over->camera()->revision();
    const size_t before = view->viewFragments().size();
    view->addFragment(over);
    view->fit();
    EXPECT_EQ(over->camera()->revision(), aimed);
    EXPECT_EQ(view->modelFragment(), view->viewFragments().front());
    view->removeFragment(over.get());
    view->removeFragment(over.get());
    EXPECT_EQ(view->viewFragments().size(), before);
}

TEST_F(MouseTest, APointerOfAToolIsShownOverTheCanvasesAloneAndTheLastOneWins)
{
    Application::get()->needGui();
    QWidget window;
    QWidget* shown = canvas.widget(&window);
    CursorController* first = CursorController::makeForCanvases(0);
    first->cursor(Vs::CursorResource::defaultCursor(Qt::PointingHandCursor));
    EXPECT_EQ(shown->cursor().shape(), Qt::ArrowCursor);
    first->enabled(true);
    EXPECT_EQ(shown->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
    CursorController* second = CursorController::makeForCanvases(0);
    second->cursor(Vs::CursorResource::defaultCursor(Qt::SizeAllCursor));
    second->enabled(true);
    EXPECT_EQ(shown->cursor().shape(), Qt::SizeAllCursor);
    GraphicsCanvas late;
    EXPECT_EQ(late.widget(&window)->cursor().shape(), Qt::SizeAllCursor);
    second->destroy();
    EXPECT_EQ(shown->cursor().shape(), Qt::PointingHandCursor);
    first->destroy();
    EXPECT_EQ(shown->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(MouseTest, AViewShowsInOneCanvasAtATime)
{
    GraphicsCanvas second;
    second.view(view, false, false);
    EXPECT_EQ(view->canvas(), &second);
    EXPECT_EQ(canvas.view(), nullptr);
    second.view(nullptr, false, false);
    EXPECT_EQ(view->canvas(), nullptr);
}

TEST_F(MouseTest, ASecondViewStartsWithTheCameraOfTheFirstAndMayShareIt)
{
    camera()->zoom(3);
    GraphicsView* other = session->createView();
    ASSERT_NE(other, nullptr);
    const Vs::Scene::Camera* copy = other->viewFragments().front()->camera();
    EXPECT_EQ(copy->extentsWidth(), camera()->extentsWidth());
    GraphicsCanvas second;
    second.view(other, false, false);
    SplitViewMgr::get()->activeCanvas(&canvas);
    EXPECT_EQ(SplitViewMgr::get()->visibleViews(), 2);
    camera()->zoom(2);
    EXPECT_NE(copy->extentsWidth(), camera()->extentsWidth());
    SplitViewMgr::get()->copyCamera();
    EXPECT_EQ(copy->extentsWidth(), camera()->extentsWidth());
}

TEST_F(MouseTest, FingersMoveWhatLiesUnderThem)
{
    const auto same = [](const GkPoint3d& a, const GkPoint3d& b) { return a.isEqualTo(b, {1e-6, 1e-9}); };
    for (const auto projection : {Vs::Scene::kPerspectiveProjection, Vs::Scene::kParallelProjection}) {
        camera()->toggleProjection(projection);
        GkPoint3d seen = view->windowToWorld({400, 300});
        TouchNavigation(view).pan(37, -52);
        EXPECT_TRUE(same(view->windowToWorld({437, 248}), seen));
        seen = view->windowToWorld({200, 600});
        const double width = camera()->extentsWidth();
        TouchNavigation(view).zoom({200, 600}, 1.25);
        EXPECT_TRUE(same(view->windowToWorld({200, 600}), seen));
        EXPECT_NEAR(camera()->extentsWidth(), width / 1.25, width * 1e-12);
        // Nonsense from a driver changes nothing.
        const GkPoint3d before = camera()->position();
        TouchNavigation(view).zoom({200, 600}, 0);
        TouchNavigation(view).zoom({200, 600}, -3);
        TouchNavigation(view).pan(std::nan(""), 0);
        EXPECT_TRUE(same(camera()->position(), before));
    }
    TouchNavigation(nullptr).pan(1, 1);
}

TEST_F(MouseTest, AControllerTurnsAndMovesByTheCamerasOwnOperations)
{
    const double distance = camera()->distance(), width = camera()->extentsWidth();
    const GkPoint3d target = camera()->target();
    const GkVector3d right = camera()->right(), along = camera()->direction();
    TouchNavigation(view).move({.turnRight = 200, .turnUp = -350});
    EXPECT_NEAR(camera()->distance(), distance, distance * 1e-12);
    EXPECT_TRUE(camera()->target().isEqualTo(target));
    EXPECT_GT(camera()->direction().angleTo(along), 0.01);
    camera()->look(along, {0, 0, 1});
    TouchNavigation(view).move({.turnNear = 300});
    EXPECT_GT(camera()->right().angleTo(right), 0.01);
    EXPECT_NEAR(camera()->direction().angleTo(along), 0, 1e-7);
    camera()->look(along, {0, 0, 1});
    TouchNavigation(view).move({.right = 350});
    const GkVector3d moved = camera()->target() - target;
    EXPECT_NEAR(moved.dotProduct(right), -moved.length(), moved.length() * 1e-9);
    EXPECT_GT(moved.length(), 0);
    TouchNavigation(view).move({.near = 350});
    EXPECT_LT(camera()->extentsWidth(), width);
    EXPECT_NEAR(camera()->extentsWidth() / camera()->distance(), width / distance, 1e-9);
}

// The controller's library asks the daemon at this socket; its stand-in sends what a real one does.
TEST_F(MouseTest, AControllerIsHeardThroughItsDaemonUntilThatIsGone)
{
    const std::string path = (folder.path() / "spnav.sock").string();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof(address.sun_path));
    path.copy(address.sun_path, path.size());
    const int daemon = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(daemon, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(listen(daemon, 1), 0);
    setenv("SPNAV_SOCKET", path.c_str(), 1);
    Application::get()->needGui();
    if (!SpaceMouseEventSite::get()->connected())
        GTEST_SKIP() << "NOTICE: the library of six-axis controllers isn't installed";
    const int line = accept(daemon, nullptr, nullptr);
    ASSERT_GE(line, 0);

    SessionMgr::get()->currentAssetSession(session);
    SessionMgr::get()->activate();
    const GkPoint3d before = camera()->position();
    // A kind (0 is a motion), three translations, three rotations, a period.
    const int32_t motion[8] = {0, 0, 0, 0, 300, 0, 0, 16};
    ASSERT_EQ(::write(line, motion, sizeof(motion)), ssize_t(sizeof(motion)));
    for (int i = 0; i < 100 && camera()->position().isEqualTo(before); ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    EXPECT_FALSE(camera()->position().isEqualTo(before));

    close(line);
    close(daemon);
    // A closed connection stays readable: it must not keep the program busy.
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_FALSE(QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents));
    SessionMgr::get()->deactivate();
}

TEST_F(MouseTest, GesturesOfATrackpadArriveThroughTheCanvas)
{
    Application::get()->needGui();
    QWidget window;
    QWidget* widget = canvas.widget(&window);
    widget->resize(400, 300);
    const QPointingDevice trackpad(QStringLiteral("fingers"), 7, QInputDevice::DeviceType::TouchPad,
                                   QPointingDevice::PointerType::Finger,
                                   QInputDevice::Capability::PixelScroll, 2, 0);
    const QPointF place(100, 80);
    const auto gesture = [&](Qt::NativeGestureType type, double value) {
        QNativeGestureEvent event(type, &trackpad, 2, place, place, place, value, {});
        QApplication::sendEvent(widget, &event);
    };
    const auto scroll = [&](QPoint pixels, QPoint angle, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event(place, place, pixels, angle, Qt::NoButton, modifiers, Qt::ScrollUpdate, false,
                          Qt::MouseEventNotSynthesized, &trackpad);
        QApplication::sendEvent(widget, &event);
    };
    gesture(Qt::ZoomNativeGesture, 0); // Moves the target to the depth of what lies there.
    const double width = camera()->extentsWidth();
    gesture(Qt::ZoomNativeGesture, 0.5);
    EXPECT_NEAR(camera()->extentsWidth(), width / 1.5, width * 1e-9);
    const GkVector3d right = camera()->right();
    gesture(Qt::RotateNativeGesture, 10);
    EXPECT_NEAR(camera()->right().angleTo(right), 0.17453, 1e-4);
    GkPoint3d seen = view->windowToWorld({100, 80});
    scroll({12, -7}, {}, Qt::NoModifier);
    EXPECT_TRUE(view->windowToWorld({112, 73}).isEqualTo(seen, {1e-6, 1e-9}));
    seen = view->windowToWorld({100, 80});
    scroll({}, {0, 120}, Qt::NoModifier);
    EXPECT_TRUE(view->windowToWorld({100, 120}).isEqualTo(seen, {1e-6, 1e-9}));
    canvas.view(nullptr, false, false);
    scroll({12, -7}, {}, Qt::NoModifier);
    gesture(Qt::ZoomNativeGesture, 0.5);
}

namespace {

/// Wants two bodies, each in a separate input.
class PairCommand : public Vs::Implements<PairCommand, Command>
{
public:
    PairCommand(CommandDefinition* definition, CommandContext* context) : Implements(definition, context) {}
    CommandInputSet* onCreateCommandInputs() override
    {
        static Info firstInfo(L"First", L"First", nullptr), secondInfo(L"Second", L"Second", nullptr);
        CommandInputSet* inputs = CommandInputSet::make(this);
        first = SelectionCommandInput::make(inputs, 0, &firstInfo);
        second = SelectionCommandInput::make(inputs, 1, &secondInfo);
        for (SelectionCommandInput* input : {first, second})
            input->requiredQuantity(true, 1);
        return inputs;
    }
    void onCommandInputEventSink(CommandInputEvent* event) override
    {
        if (auto* query = Vs::cast<SelectionInputQuerySelectPermittedEvent>(event))
            query->permitted(permits);
        else if (const auto* preselection = Vs::cast<SelectionInputPreselectionEvent>(event))
            pointed = preselection->selection() != nullptr;
    }
    void onValidateInputs(CommandInputStatus&, bool) override {}
    void onClearCommandRequests(bool) override {}

    SelectionCommandInput* first = nullptr;
    SelectionCommandInput* second = nullptr;
    bool permits = true;
    bool pointed = false;
};

class PairCommandDef : private InfoHolder, public CommandDefinition
{
public:
    PairCommandDef() : InfoHolder{Info(L"PairTestCommand", L"Pair", nullptr)}, CommandDefinition(&record) {}

private:
    CommandBase* onCreateCommand(CommandContext* context) override { return new PairCommand(this, context); }
};

} // namespace

TEST_F(MouseTest, OneSelectionInputAtATimeTakesTheClicks)
{
    up(kLeftButton, 2, 2); // Another test may have left it pressed.
    PairCommandDef definition;
    std::ignore = session->commandManager()->executeCommand(&definition, CommandContext());
    auto* pair = Vs::cast<PairCommand>(session->commandManager()->activeCommand());
    ASSERT_TRUE(pair);
    const double x = canvas.width() / 2.0, y = canvas.height() / 2.0;
    const auto click = [&] {
        down(kLeftButton, x, y);
        up(kLeftButton, x, y);
    };
    const auto filled = [&] {
        return std::to_string(pair->first->selectionSet().size()) +
               std::to_string(pair->second->selectionSet().size());
    };
    move(x, y);
    EXPECT_TRUE(pair->pointed);
    move(2, 2);
    EXPECT_FALSE(pair->pointed);
    pair->permits = false;
    move(x, y);
    click();
    EXPECT_FALSE(pair->pointed);
    EXPECT_EQ(filled(), "00") << "whoever listens can refuse a pick";
    pair->permits = true;
    click();
    EXPECT_EQ(filled(), "10");
    EXPECT_TRUE(pair->second->isCurrent());
    click();
    EXPECT_EQ(filled(), "11");
    EXPECT_TRUE(pair->commandInputSet()->valid());

    pair->first->clear();
    pair->second->clear();
    pair->second->makeCurrent();
    click();
    EXPECT_EQ(filled(), "01");
    EXPECT_TRUE(pair->first->isCurrent()) << "what was made current goes back when it is complete";
    pair->first->state(SelectionCommandInput::EState::Idle);
    click();
    EXPECT_EQ(filled(), "01");
    EXPECT_EQ(pair->first->whyInvalid(), L"Select something in the view.");
    pair->first->disable();
    EXPECT_TRUE(pair->commandInputSet()->valid());
    session->commandManager()->terminateAll(ETerminationReason::Cancel);
}
