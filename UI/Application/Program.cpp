#include "UI/Application/Program.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Progress.h"
#include "Server/Base/PythonManager.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/TranscriptSecrets.h"
#include "Server/DataModel/DocumentOpener.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Application/Console.h"
#include "UI/Application/Coverage.h"
#include "UI/Application/HandOverReceiver.h"
#include "UI/Application/LineRunner.h"
#include "UI/Application/Lists.h"
#include "UI/Application/Start.h"
#include "UI/Application/Stubs.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/EndSignals.h"
#include "UI/Base/Program/ProgramLink.h"
#include "UI/Base/Session/AutoSaving.h"
#include "UI/Base/Session/DamageNotice.h"
#include "UI/Base/Session/DocumentWatch.h"
#include "UI/Base/Validation/ReferenceCheck.h"
#include "UI/Base/Validation/References.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <tuple>

namespace Quillet {
namespace {

/// The first Ctrl-C asks a running load to stop; without one, or the second time, it ends the program, in a
/// window the way the other signals do.
void onInterrupt(int signal)
{
    if (Vs::Progress::active() && !Vs::Progress::cancelled()) {
        Vs::Progress::requestCancel();
        return;
    }
    if (!Vu::Application::headless()) {
        Vu::EndSignals::end(signal);
        return;
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

bool isSet(const char* name)
{
    const char* value = std::getenv(name);
    return value && *value;
}

/// Returns whether a window that is already running has taken the files.
bool handFilesOver(const CommandLine& line)
{
    HandedOver all;
    for (const std::string& file : line.files)
        all.files.push_back(Vs::PathInfo::absolute(boost::filesystem::path(file)).string());
    all.files.insert(all.files.end(), line.links.begin(), line.links.end());
    if (all.files.empty())
        return false;
    for (const char* variable : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"})
        if (all.activationToken.empty() && isSet(variable))
            all.activationToken = std::getenv(variable);
    return handOver(all);
}

std::string historyFile(const char* name)
{
    try {
        const boost::filesystem::path file = Vs::PathInfo::optionsDirectory() / name;
        // The line editor would create it readable for everyone.
        if (!boost::filesystem::exists(file))
            Vs::OwnFiles::write(file, {});
        return file.string();
    } catch (const std::exception&) {
        return {}; // The console works without one.
    }
}

/// Opens the files and runs the steps, until one fails, unless failures are to be ignored.
void runSteps(const CommandLine& line, LineRunner& runner)
{
    Vu::Application* application = Vu::Application::get();
    for (const std::string& file : line.files) {
        if (!runner.openFile(file))
            return;
        if (!line.infoLine.empty() && !runner.runLine(Vs::Strings::fromBytes(line.infoLine), "--info"))
            return;
    }
    int commands = 0;
    std::vector<std::wstring> scriptArguments;
    for (const std::string& argument : line.scriptArguments)
        scriptArguments.push_back(Vs::Strings::fromBytes(argument));
    for (const Step& step : line.steps) {
        if (application->exiting())
            return;
        bool goOn = true;
        switch (step.kind) {
        case Step::Kind::Command:
            goOn = runner.runWrittenLine(Vs::Strings::fromBytes(step.text),
                                         step.place.empty() ? "--command:" + std::to_string(++commands)
                                                            : step.place);
            break;
        case Step::Kind::Replay:
            goOn = runner.replay(step.text);
            break;
        case Step::Kind::Script:
            goOn = runner.runScript(step.text, scriptArguments);
            break;
        case Step::Kind::Console:
            goOn = runConsole(runner, historyFile("console_history"));
            break;
        case Step::Kind::Python:
            goOn = runPythonConsole(runner, historyFile("python_history"));
            break;
        }
        if (!goOn)
            return;
    }
}

/// Errors in them are reported, but don't make this run a failure.
void runAutorunScripts()
{
    Vs::Status status;
    Vs::PythonAutorunScripts::get()->run(status);
    Vu::Application::get()->flushDeferredTasks();
    const Vu::WorkspaceWindow* window = Vu::WorkspaceWindow::activeWorkspaceWindow();
    if (status.isError() && window && window->shown())
        Vu::CommandMgr::get()->GetAlertController()->addAlert(Vu::EAlertSeverity::Error, status.toString());
}

void takeReferenceMode(const std::string& mode)
{
    using Mode = Vu::References::Mode;
    if (!mode.empty())
        Vu::References::mode(mode == "compare"  ? Mode::Compare
                             : mode == "update" ? Mode::Update
                                                : Mode::Fill);
}

bool readsConsole(const CommandLine& line)
{
    return std::any_of(line.steps.begin(), line.steps.end(), [](const Step& step) {
        return step.kind == Step::Kind::Console || step.kind == Step::Kind::Python;
    });
}

int runWorkspace(const CommandLine& line)
{
    // Transcripts put their results into the user's current folder, unless told otherwise.
    std::map<std::string, std::string> parameters = line.parameters;
    boost::system::error_code gone;
    parameters.emplace("out", boost::filesystem::current_path(gone).string());
    std::signal(SIGINT, onInterrupt);
    for (const auto& [name, value] : parameters)
        Vs::TranscriptSecrets::keepIfNamedSo(Vs::Strings::widen(name), Vs::Strings::fromBytes(value));
    Vs::TranscriptMgr::get()->parameters(std::move(parameters));
    LineRunner runner({line.keepGoing, line.echo});
    Vu::Application* application = Vu::Application::get();
    std::unique_ptr<HandOverReceiver> receiver;
    takeReferenceMode(line.references);
    Vu::tellCheckedValues(line.verbose);
    Vu::AutoSaving::begin();
    // A window must not wait for input elsewhere, and the console reads its own lines.
    Vs::PythonManager::get()->readsInput(line.headless && !readsConsole(line));
    Vu::Workspace* workspace = Vu::WorkspaceMgr::get()->create();
    if (!line.headless) {
        workspace->window()->show();
        Vu::EndSignals::watch();
        Vu::DocumentWatch::begin();
        Vu::DamageNotice::begin();
    }
    if (line.autorun)
        runAutorunScripts();
    if (!line.headless && !Vu::Application::testing())
        Vu::AutoSaving::lookForFiles();
    runSteps(line, runner);
    for (const std::string& link : line.links)
        Vu::ProgramLink::follow(link);
    int code = kExitOk;
    // Whoever hands files over must not wait for those given to this start.
    const bool stays = !line.headless && !line.exit && !application->exiting();
    if (stays)
        receiver = std::make_unique<HandOverReceiver>(HandOverReceiver::openInWindow);
    if (stays)
        code = application->run();
    application->flushDeferredTasks();
    if (runner.scriptCode() != 0)
        return runner.scriptCode();
    return runner.failed() || Vs::TranscriptMgr::get()->recordingLost() ? kExitLineFailed : code;
}

/// Starts a driver while the first file is still being read, if the lines ask for a picture: both take about
/// as long.
class ExpectedPicture
{
public:
    explicit ExpectedPicture(const CommandLine& line)
    {
        const auto pictures = std::ranges::count_if(line.steps, asksForPicture);
        m_isExpected = line.headless && pictures > 0;
        if (m_isExpected)
            Vs::Scene::OffscreenRenderer::get()->expect(pictures == 1 && line.steps.size() == 1);
    }
    ~ExpectedPicture()
    {
        if (m_isExpected)
            Vs::Scene::OffscreenRenderer::get()->settle();
    }
    ExpectedPicture(const ExpectedPicture&) = delete;
    ExpectedPicture& operator=(const ExpectedPicture&) = delete;

private:
    static bool asksForPicture(const Step& step)
    {
        return step.kind == Step::Kind::Command &&
               (step.text.find("SaveAsImageCommand") != std::string::npos ||
                step.text.find("Design.Picture") != std::string::npos);
    }

    bool m_isExpected = false;
};

int runLists(const CommandLine& line)
{
    if (line.listCommands)
        listCommands();
    if (line.listDefinitions)
        listDefinitions();
    if (line.listFormats)
        listFormats();
    if (!line.stubsDirectory.empty())
        writeStubs(line.stubsDirectory);
    return kExitOk;
}

} // namespace

int runProgram(CommandLine line, int& count, char** arguments)
{
    if (!takeProfile(line.profileDirectory))
        return kExitUsage;
    if (line.handOver && handFilesOver(line))
        return kExitOk;
    const bool lists =
        line.listCommands || line.listDefinitions || line.listFormats || !line.stubsDirectory.empty();
    if (!line.headless && !lists && !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
        complain("there is no display (DISPLAY and WAYLAND_DISPLAY are not set), so this run is headless.");
        line.headless = true;
    }
    line.headless = line.headless || lists;
    // Someone following the lines sees what preceded the very last one.
    if (!lists)
        std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    if (!lists && !Vs::PathInfo::hasHome())
        complain("no home folder was found (HOME is not set, and this user has none): what this run keeps "
                 "goes with it, "
                 "and no scripts of the user's run at its start.");
    // A window with unsaved work must outlive the terminal it was started from. Without a window the run ends
    // with the reader of its answers, as programs in a pipe do.
    if (!line.headless)
        std::signal(SIGPIPE, SIG_IGN);
    // A file that would exceed the system's size limit can't be written, and that must not end the program.
    std::signal(SIGXFSZ, SIG_IGN);
    // Reading the first file takes longest, and needs nothing of what starts now.
    if (!lists && !line.files.empty())
        Vs::DocumentOpener::expect(line.files.front());
    Vu::installHost();
    Vu::Application::initialize(count, arguments, line.headless);
    takeLanguage(line.headless);
    const ExpectedPicture picture(line);
    bool whole = true;
    if (!loadAddIns(whole))
        return kExitUsage;

    int code = kExitOk;
    if (!line.coverageFile.empty())
        Coverage::begin();
    try {
        code = lists ? runLists(line) : runWorkspace(line);
        if (!line.coverageFile.empty())
            Coverage::write(line.coverageFile);
    } catch (...) {
        end();
        throw;
    }
    end();
    return code == kExitOk && !whole ? kExitLineFailed : code;
}

} // namespace Quillet
