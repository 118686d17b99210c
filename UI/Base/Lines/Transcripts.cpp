#include "UI/Base/Lines/Transcripts.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/Warning.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/TranscriptRecorder.h"
#include "UI/Base/Lines/StateRecorder.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/Answers.h"
#include "UI/Base/Script/ScriptTransactions.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/ViewMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <vector>

namespace Vu {
namespace {

class ApplicationTranscriptHost : public Vs::TranscriptHost
{
public:
    explicit ApplicationTranscriptHost(StateRecorder* state) : m_state(state) {}

    void recordingStarted() override { m_state->begin(); }

    void runBegins() override { m_openBefore.push_back(ScriptTransactions::open()); }
    std::wstring runEnds() override
    {
        const size_t open = m_openBefore.back();
        m_openBefore.pop_back();
        return ScriptTransactions::takeBackTo(open);
    }

    void settle() override
    {
        try {
            Application::get()->deferredTasks()->flush();
        } catch (const std::exception& fault) {
            Vs::warn(Vs::Strings::widen(fault.what()));
        }
        if (Vs::TranscriptMgr::get()->replaying())
            settleFit();
        Answers::lineRan();
    }

    void failed(const std::wstring& message) override
    {
        if (Vs::TextOutput* output = Vs::TextCommandMgr::get()->output())
            output->error(message);
        // A user who started the replay in the window sees no terminal.
        const WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
        if (window && window->shown())
            CommandMgr::get()->GetAlertController()->addAlert(EAlertSeverity::Error, message);
    }

private:
    // The next line finds the camera where it would be in a window, since no frame may be drawn in between
    // here.
    static void settleFit()
    {
        AssetSession* session = SessionMgr::get()->activeAssetSession();
        ViewMgr* views = session ? session->viewManager() : nullptr;
        if (GraphicsView* view = views ? views->graphicsView() : nullptr)
            view->settleFit();
    }

    StateRecorder* m_state;
    std::vector<size_t> m_openBefore; ///< Open transactions of scripts at the start of each run.
};

/// The line with which a text command repeats what it did to the open document; empty for those that open and
/// close documents or run others, and for those that depend on the selection or the view.
std::wstring lineThatRunsAgain(const Vs::TextCommand& command, const Vs::TextCommandParameters& parameters)
{
    if (command.area() != L"Design")
        return {};
    std::wstring line = command.area() + L'.' + command.name();
    for (unsigned i = 0; i < parameters.parameters(); ++i)
        line += L' ' + Vs::Strings::quote(parameters[i]);
    for (const std::wstring& flag : parameters.flags())
        line += L" /" + flag;
    return line;
}

/// Records, and discards the answers of a typed line when the next line begins, since no replay settles
/// there. Changes of documents are also kept for recovery.
class Recorder : public TranscriptRecorder
{
public:
    using TranscriptRecorder::after;
    using TranscriptRecorder::before;
    using TranscriptRecorder::TranscriptRecorder;
    void before(const Vs::TextCommand& command) override
    {
        // Whoever waits for the line reports answers that it doesn't ask for.
        if (!Vs::TranscriptMgr::get()->settles())
            Answers::lineRan();
        Vs::AutoSaveController::get()->lineBegins();
        TranscriptRecorder::before(command);
    }
    void after(const Vs::TextCommand& command, const Vs::TextCommandParameters& parameters,
               const Vs::TextCommandResult& result) override
    {
        TranscriptRecorder::after(command, parameters, result);
        Vs::AutoSaveController::get()->lineDone(result.first == 0 ? lineThatRunsAgain(command, parameters)
                                                                  : std::wstring());
    }
};

/// Lives as long as the process: commands may still end during shutdown.
StateRecorder* stateRecorder()
{
    static auto* const recorder = new StateRecorder;
    return recorder;
}

} // namespace

void installTranscripts()
{
    StateRecorder* const state = stateRecorder();
    static ApplicationTranscriptHost host(state);
    Vs::TranscriptMgr::get()->host(&host);
    TranscriptCameraTrigger::recorder(
        [](Vs::Scene::Camera* camera) { stateRecorder()->cameraMoved(camera); });
    static auto* const recorder = new Recorder({.before =
                                                    [state] {
                                                        Answers::forgetGiven();
                                                        state->write();
                                                    },
                                                .camera = [state] { state->writeCamera(); },
                                                .entry = &Answers::writeGiven,
                                                .after =
                                                    [state](const std::wstring& line) {
                                                        state->writeDocuments(line);
                                                        state->writeFitted();
                                                        state->accept();
                                                    }});
    CommandMgr::addObserver(recorder);
    Vs::TextCommandMgr::get()->observer(recorder);
}

} // namespace Vu
