#pragma once

#include "Server/Geometry/GkPoint3d.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/View/MouseEvents.h"

namespace Vs::Scene {
class Camera;
}

namespace Vu {
class CommandBase;
class GraphicsCanvas;
class GraphicsView;
} // namespace Vu

namespace CommandsTests {

/// A box in the middle of the active view, and a mouse in its canvas. Every event is sent as the canvas sends
/// it, followed by the deferred tasks.
class Navigation : public WithProgram
{
protected:
    void SetUp() override;
    void TearDown() override;

    static Vu::GraphicsView* view();
    static Vu::GraphicsCanvas* canvas();
    static Vs::Scene::Camera* camera();
    static Vu::CommandBase* activeCommand();
    /// The key of the active tool's definition; empty if there is none.
    static std::wstring activeKey();

    /// Positions are logical pixels from the middle of the canvas.
    void press(int button, int x, int y, unsigned modifiers = 0);
    void move(int x, int y, unsigned modifiers = 0);
    void release(int button, int x, int y, unsigned modifiers = 0);
    void drag(int button, int fromX, int fromY, int toX, int toY, unsigned modifiers = 0);
    void click(int button, int x, int y, unsigned modifiers = 0);
    void doubleClick(int button, int x, int y, unsigned modifiers = 0);
    void scroll(int delta, int x, int y, unsigned modifiers = 0);
    /// Starts a tool, as its button does.
    static void start(const std::wstring& key);

    /// Where the pixel's ray intersects the target's plane.
    static GkPoint3d under(int x, int y);

private:
    using Send = void (Vu::MouseEventSource::*)(Vu::MouseEvent*);
    void send(Send send, int button, unsigned modifiers, int x, int y, int delta = 0);

    int m_held = 0;
};

/// The state of a camera, for comparison.
std::string stand(const Vs::Scene::Camera& camera);

} // namespace CommandsTests
