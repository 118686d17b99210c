#include "UI/Base/Host.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Require.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/FileChecks.h"
#include "Server/DataModel/IDocMgmtHandler.h"
#include "Server/DataModel/ThumbnailSource.h"
#include "Server/DataModel/TransactionMgr.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDialog.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/CommandHost.h"
#include "UI/Base/Lines/Transcripts.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/AlertNotifications.h"
#include "UI/Base/Program/Private/ApplicationHost.h"
#include "UI/Base/Program/Private/FileEdition.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/ByHand.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/LeftDocuments.h"
#include "UI/Base/Session/Private/RecentFilesFollower.h"
#include "UI/Base/Session/Private/SavingHandler.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Session/StepSurroundings.h"
#include "UI/Base/Session/Thumbnail.h"
#include "UI/Base/View/CursorController.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/View/ViewMgr.h"
#include "UI/Base/Workspace/Private/CanvasHost.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <map>
#include <utility>

namespace Vu {
namespace {

/// For the pictures in saved documents.
constexpr uint32_t kThumbnailSide = 256;

/// The pointers that commands show over the canvases, each while its command is active in the active session.
class CommandCursors : public CommandEventSite, public SessionEventSite
{
public:
    CommandCursors()
    {
        CommandEventSource::get()->subscribe(this);
        SessionEventSource::get()->subscribe(this);
    }
    ~CommandCursors() override
    {
        SessionEventSource::get()->unsubscribe(this);
        CommandEventSource::get()->unsubscribe(this);
    }

    CursorController* of(const CommandBase* command)
    {
        CursorController*& controller = m_controllers[command];
        if (!controller)
            controller = CursorController::makeForCanvases(0);
        return controller;
    }
    void forget(const CommandBase* command)
    {
        const auto found = m_controllers.find(command);
        if (found == m_controllers.end())
            return;
        found->second->destroy();
        m_controllers.erase(found);
    }

private:
    void commandAvailabilitiesChanged(Vs::Event*) override { refresh(); }
    void currentSessionChanged(SessionEvent*) override { refresh(); }
    void sessionPostActivateForAsset(SessionEvent*) override { refresh(); }

    void refresh()
    {
        const CommandBase* active = CommandBase::getActiveCommand();
        for (const auto& [command, controller] : m_controllers)
            controller->enabled(command == active);
    }

    std::map<const CommandBase*, CursorController*> m_controllers;
};

class ApplicationCommandHost : public CommandHost
{
public:
    AssetSession* activeAssetSession() override { return SessionMgr::get()->activeAssetSession(); }
    Shell* activeShell() override
    {
        const Workspace* workspace = WorkspaceMgr::activeWorkspace();
        return workspace ? workspace->shellManager()->activeShell() : nullptr;
    }
    Workspace* activeWorkspace() override { return WorkspaceMgr::activeWorkspace(); }
    CommandMgr* commandManager(AssetSession* session) override { return session->commandManager(); }
    Vs::Asset* asset(const AssetSession* session) override { return session->asset(); }
    GraphicsView* graphicsView(AssetSession* session) override
    {
        return session->viewManager()->graphicsView();
    }
    void activateEnvironment(AssetSession* session, const std::wstring& id) override
    {
        EnvironmentDefinition* wanted = EnvironmentDefinitionMgr::get()->findEnvironmentDefinitionById(id);
        const EnvironmentDefinition* active = session ? session->activeEnvironment() : nullptr;
        if (session && wanted && wanted->isApplicable(session) && !(active && active->offers(id)))
            session->activateEnvironment(wanted, false);
    }
    Vs::SelectionMgr* selectionManager(AssetSession* session) override { return session->selectionManager(); }
    CursorController* cursorController(CommandBase* command) override { return m_cursors.of(command); }
    CommandDialog* commandDialog(CommandBase* command) override { return &m_dialogs[command]; }
    void commandGone(const CommandBase* command) override
    {
        m_cursors.forget(command);
        m_dialogs.erase(command);
    }
    bool takesOver(CommandDefinition* definition, const CommandContext& context) override
    {
        const bool replaces = ReplacingDocument::isCommand(definition);
        if (replaces)
            ReplacingDocument::executeLater(definition, context);
        return replaces || ByHand::takesOver(*definition, context);
    }
    Vs::Tasks* deferredTasks() override { return Application::get()->deferredTasks(); }

private:
    CommandCursors m_cursors;
    std::map<const CommandBase*, CommandDialog> m_dialogs;
};

WorkspaceWindow* shownWindow()
{
    WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    return window && window->shown() ? window : nullptr;
}

class WindowsOfApplication : public ApplicationHost
{
public:
    QWidget* mainWidget() const override
    {
        const WorkspaceWindow* window = shownWindow();
        return window ? window->widget() : nullptr;
    }
    std::shared_ptr<ProgressDisplay> progress() const override
    {
        const WorkspaceWindow* window = shownWindow();
        return window ? window->progress() : nullptr;
    }
    bool showMessage(const std::wstring& text) override
    {
        WorkspaceWindow* window = shownWindow();
        if (window)
            window->statusMessage(text);
        return window != nullptr;
    }
    void closeWindows() override { WorkspaceMgr::get()->closeAll(); }
    bool mayLeaveDocuments() override
    {
        const std::vector<Vs::Document*> open = SessionMgr::get()->openDocuments();
        return Vs::IDocMgmtHandler::notifyClosingDirtyDocuments({open.begin(), open.end()}) !=
               Vs::eDocMgmtStop;
    }
};

class CanvasesOfWindows : public CanvasHost
{
public:
    std::shared_ptr<GraphicsCanvas> make() override { return std::make_shared<GraphicsCanvas>(); }
    void inSight(const std::vector<GraphicsCanvas*>& canvases, bool value) override
    {
        for (GraphicsCanvas* canvas : canvases)
            canvas->inSight(value);
        SplitViewMgr::get()->sightChanged(canvases);
    }
    void invalidateAll() override
    {
        for (GraphicsCanvas* canvas : all())
            canvas->invalidate();
    }
    void repaintAll() override
    {
        for (GraphicsCanvas* canvas : all())
            canvas->repaintNow();
    }

private:
    static std::vector<GraphicsCanvas*> all()
    {
        std::vector<GraphicsCanvas*> canvases;
        GraphicsCanvas::allCanvases(canvases);
        return canvases;
    }
};

CommandDefinition* definitionOf(const CommandBase* command)
{
    return command ? command->commandDefinition() : nullptr;
}

/// The key of the command that changes the asset now; "TextCommand" where a line does it without one.
std::wstring cmdKeyOf(const Vs::Asset* asset)
{
    const AssetSession* session = SessionMgr::get()->getOpenAssetSession(asset);
    CommandMgr* own = session ? session->commandManager() : nullptr;
    for (const CommandMgr* manager : {own, CommandMgr::get()})
        if (const CommandDefinition* executing =
                manager ? definitionOf(manager->executingCommand()) : nullptr)
            return executing->id();
    const CommandDefinition* tool = own ? definitionOf(own->activeCommand()) : nullptr;
    return tool && !tool->readonly() ? tool->id() : L"TextCommand";
}

} // namespace

void installHost()
{
    Vs::assertMainThread();
    static bool installed = false;
    if (std::exchange(installed, true))
        return;
    // They live to the end of the process: add-ins may still use them while being destroyed.
    CommandHost::install(new ApplicationCommandHost);
    ApplicationHost::install(new WindowsOfApplication);
    CanvasHost::install(new CanvasesOfWindows);
    Vs::TransactionMgr::cmdKeySource(&cmdKeyOf);
    Vs::ThumbnailSource::install(
        [](const Vs::Document& document) { return thumbnailOf(document.activeAsset(), kThumbnailSide); });
    // A run without a main loop reports between two lines.
    Vs::FileChecks::results().wakeUp(
        [] { Application::get()->deferredTasks()->post([] { Vs::FileChecks::results().runOnce(); }); });
    Application::get()->addService(std::make_unique<FileEdition>(Vs::PathInfo::rootDirectory() / "UI" /
                                                                 "Base" / "Edition" / "Edition.json"));
    installTranscripts();
    StepSurroundings::install();
    static auto* const saving = new SavingHandler;
    static_cast<void>(saving);
    static auto* const recent = new RecentFilesFollower;
    static_cast<void>(recent);
    static auto* const left = new LeftDocuments;
    static_cast<void>(left);
    static auto* const alerts = new AlertNotifications;
    static_cast<void>(alerts);
}

} // namespace Vu
