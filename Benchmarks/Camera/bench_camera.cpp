// What a step of a camera tool costs beside an empty command: a hand sends up to a thousand moves a second.
// Without a window, so that it is the program's own work that is measured, not the drawing.

#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <tuple>

using namespace Vu;

namespace {

long executions = 0;
Info emptyInfo(L"BenchEmptyCommand", L"Empty", nullptr);

class EmptyCmd : public Vs::Implements<EmptyCmd, SimpleCommand>
{
public:
    EmptyCmd(CommandDefinition* definition, CommandContext* context) : Implements(definition, context) {}
    void onExecute(Vs::Status&) override { ++executions; }
};

class EmptyCmdDef : public Vs::Implements<EmptyCmdDef, CommandDefinition>
{
public:
    EmptyCmdDef() : Implements(&emptyInfo) {}

protected:
    CommandBase* onCreateCommand(CommandContext* context) override { return new EmptyCmd(this, context); }
};

/// The best of five rounds, in nanoseconds a call.
double measure(long count, const std::function<void(long)>& call)
{
    double best = 1e30;
    for (int round = 0; round < 5; ++round) {
        const auto start = std::chrono::steady_clock::now();
        for (long i = 0; i < count; ++i)
            call(i);
        const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - start;
        best = std::min(best, took.count() / double(count));
    }
    return best;
}

using Send = void (MouseEventSource::*)(MouseEvent*);

void send(Send send, int button, int x, int y, int delta = 0)
{
    MouseEvent event(SceneUtilities::getActiveGraphicsCanvas(), {button, 0, double(x), double(y), delta});
    (MouseEventSource::get()->*send)(&event);
}

/// One move of a drag to and fro.
void dragStep(int button, long i)
{
    send(&MouseEventSource::fireMouseMove, button, 640 + int(i % 100), 400 + int(i % 60));
}

double measureDrag(int button, long count)
{
    const Vs::Scene::Camera* camera = SceneUtilities::getActiveAssetGraphicView()->modelFragment()->camera();
    const uint64_t before = camera->revision();
    send(&MouseEventSource::fireMouseDown, button, 640, 400);
    const double took = measure(count, [&](long i) { dragStep(button, i); });
    send(&MouseEventSource::fireMouseUp, button, 640, 400);
    if (camera->revision() < before + uint64_t(count)) {
        std::fprintf(stderr, "The camera stood still.\n");
        std::exit(1);
    }
    return took;
}

} // namespace

int main(int argc, char** argv)
{
    const long count = argc > 1 ? std::max(5L, std::atol(argv[1])) : 20000;
    installHost();
    Application::initialize(argc, argv, true);
    Vs::Status status;
    Vs::AddInMgr::get()->loadAddIns(status);
    WorkspaceMgr::get()->create();
    for (const wchar_t* line : {L"Design.New", L"Design.Box 20 20 20"})
        if (Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line).first != 0) {
            std::fprintf(stderr, "The line failed: %ls\n", line);
            return 1;
        }
    {
        EmptyCmdDef definition;
        CommandMgr* manager = CommandMgr::getActiveCommandManager();
        const CommandContext context = CommandContext::activeContext();
        const double empty =
            measure(count, [&](long) { std::ignore = manager->executeCommand(&definition, context); });
        std::printf("%ld executions\n", executions);
        const auto print = [&](const char* what, double took) {
            std::printf("%-28s %8.0f ns, %6.2f empty commands\n", what, took, took / empty);
        };
        print("empty command", empty);
        print("step of an orbit", measureDrag(kRightButton, count));
        print("step of a pan", measureDrag(kMiddleButton, count));
        print("turn of the wheel", measure(count, [](long i) {
                  send(&MouseEventSource::fireMouseScroll, kNoMouseButton, 700, 300, i % 2 ? 120 : -120);
              }));
        print("press and release", measure(count, [](long) {
                  send(&MouseEventSource::fireMouseDown, kMiddleButton, 640, 400);
                  send(&MouseEventSource::fireMouseUp, kMiddleButton, 640, 400);
              }));
    }
    Application::get()->shutDown();
    Vs::AddInMgr::get()->unloadAddIns();
}
