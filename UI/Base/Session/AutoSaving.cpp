#include "UI/Base/Session/AutoSaving.h"

#include "Server/Base/Task.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/Private/AutoSaveMessages.h"

#include <memory>
#include <tuple>

namespace Vu {
namespace {

bool s_waits = false; ///< A task is queued.

/// Keeps running as long as there is something to wait for.
class AutoSaveTask : public Vs::Implements<AutoSaveTask, Vs::Task>
{
public:
    AutoSaveTask() { s_waits = true; }
    ~AutoSaveTask() override { s_waits = false; }
    bool run() override { return !Vs::AutoSaveController::get()->work(); }
};

void wakeUp()
{
    // Without a loop nobody runs idle tasks, but lines end with the deferred ones.
    if (Application::headless())
        Application::get()->deferredTasks()->post(
            [] { static_cast<void>(Vs::AutoSaveController::get()->work()); });
    else if (!s_waits)
        Application::get()->idleTasks()->add(std::make_unique<AutoSaveTask>());
}

} // namespace

void AutoSaving::begin()
{
    // It lives to the end of the process, like what it listens to.
    static auto* const messages = new AutoSaveMessages;
    static_cast<void>(messages);
    Vs::AutoSaveController* controller = Vs::AutoSaveController::get();
    controller->withoutLoop(Application::headless());
    // Where nobody was asked, nobody comes back for what he didn't want.
    controller->keepDiscarded(!Application::headless() && !Application::testing());
    controller->wakeUp(&wakeUp);
    controller->start();
}

void AutoSaving::lookForFiles()
{
    Application::get()->idleTasks()->post([] { Vs::AutoSaveController::get()->lookForFiles(); });
}

void AutoSaving::replaySteps(const std::wstring& recoveryFile, Vs::Document* document)
{
    Vs::AutoSaveController::get()->replaySteps(recoveryFile, document, [](const std::wstring& line) {
        std::ignore = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line);
        Application::get()->flushDeferredTasks();
    });
}

void AutoSaving::end()
{
    Vs::AutoSaveController::get()->end();
}

} // namespace Vu
