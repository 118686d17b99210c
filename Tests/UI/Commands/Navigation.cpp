#include "Tests/UI/Commands/Navigation.h"

#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"

#include <iomanip>
#include <sstream>

namespace CommandsTests {

using namespace Vu;

void Navigation::SetUp()
{
    WithProgram::SetUp();
    answer(L"Design.New");
    answer(L"Design.Box 20 20 20");
    ASSERT_NE(view(), nullptr);
    ASSERT_NE(canvas(), nullptr);
    // What lies where another test left the pointer must not affect this one.
    MouseEventSource::get()->mouseLeft(canvas());
    camera()->look({0, 1, 0}, {0, 0, 1});
    camera()->fit(view()->modelFragment()->bounds());
}

void Navigation::TearDown()
{
    UIBaseOptionGroup* options = UIBaseOptionGroup::get();
    options->useContrainedOrbit(true);
    options->cameraPivotEnabled(true);
    options->pivotUnderPointer(true);
    options->reverseZoomDirection(false);
    WithProgram::TearDown();
}

GraphicsView* Navigation::view()
{
    return SceneUtilities::getActiveAssetGraphicView();
}

GraphicsCanvas* Navigation::canvas()
{
    return SceneUtilities::getActiveGraphicsCanvas();
}

Vs::Scene::Camera* Navigation::camera()
{
    return view()->modelFragment()->camera();
}

CommandBase* Navigation::activeCommand()
{
    return CommandBase::getActiveCommand();
}

std::wstring Navigation::activeKey()
{
    const CommandBase* active = activeCommand();
    const std::wstring key = active ? active->commandDefinition()->id() : std::wstring();
    return key == CommandDefinition::selectCommandId() ? std::wstring() : key;
}

void Navigation::send(Send send, int button, unsigned modifiers, int x, int y, int delta)
{
    MouseEvent event(canvas(),
                     {button, modifiers, x + canvas()->width() / 2.0, y + canvas()->height() / 2.0, delta});
    (MouseEventSource::get()->*send)(&event);
    Application::get()->flushDeferredTasks();
}

void Navigation::press(int button, int x, int y, unsigned modifiers)
{
    m_held = button;
    send(&MouseEventSource::fireMouseDown, button, modifiers, x, y);
}

void Navigation::move(int x, int y, unsigned modifiers)
{
    send(&MouseEventSource::fireMouseMove, m_held, modifiers, x, y);
}

void Navigation::release(int button, int x, int y, unsigned modifiers)
{
    send(&MouseEventSource::fireMouseUp, button, modifiers, x, y);
    m_held = kNoMouseButton;
}

void Navigation::drag(int button, int fromX, int fromY, int toX, int toY, unsigned modifiers)
{
    press(button, fromX, fromY, modifiers);
    move((fromX + toX) / 2, (fromY + toY) / 2, modifiers);
    move(toX, toY, modifiers);
    release(button, toX, toY, modifiers);
}

void Navigation::click(int button, int x, int y, unsigned modifiers)
{
    press(button, x, y, modifiers);
    release(button, x, y, modifiers);
}

void Navigation::doubleClick(int button, int x, int y, unsigned modifiers)
{
    click(button, x, y, modifiers);
    send(&MouseEventSource::fireMouseDoubleClick, button, modifiers, x, y);
    release(button, x, y, modifiers);
}

void Navigation::scroll(int delta, int x, int y, unsigned modifiers)
{
    send(&MouseEventSource::fireMouseScroll, kNoMouseButton, modifiers, x, y, delta);
}

void Navigation::start(const std::wstring& key)
{
    std::ignore = CommandMgr::getActiveCommandManager()->executeCommand(key, CommandContext::activeContext());
    Application::get()->flushDeferredTasks();
}

GkPoint3d Navigation::under(int x, int y)
{
    return view()->windowToWorld({x + canvas()->width() / 2, y + canvas()->height() / 2});
}

std::string stand(const Vs::Scene::Camera& camera)
{
    std::ostringstream text;
    const auto write = [&](double x, double y, double z) {
        text << std::setprecision(9) << x << ' ' << y << ' ' << z << "; ";
    };
    write(camera.position().x, camera.position().y, camera.position().z);
    write(camera.target().x, camera.target().y, camera.target().z);
    write(camera.screenUp().x, camera.screenUp().y, camera.screenUp().z);
    write(camera.extentsWidth(), camera.extentsHeight(), 0);
    return text.str();
}

} // namespace CommandsTests
