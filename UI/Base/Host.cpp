#include "UI/Base/Host.h"

#include "UI/Base/Application.h"
#include "UI/Base/AssetSession.h"
#include "UI/Base/Command/CommandHost.h"
#include "UI/Base/Environment.h"
#include "UI/Base/GraphicsView.h"
#include "UI/Base/SessionMgr.h"
#include "UI/Base/ShellMgr.h"
#include "UI/Base/ViewMgr.h"
#include "UI/Base/WorkspaceMgr.h"

namespace Vu {
namespace {

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
        return Vs::cast<GraphicsView>(session->viewManager()->view(GraphicsView::interfaceId()));
    }
    void activateEnvironment(AssetSession* session, const std::wstring& id) override
    {
        EnvironmentDefinition* wanted = EnvironmentDefinitionMgr::get()->findEnvironmentDefinitionById(id);
        if (session && wanted && wanted->isApplicable(session) && session->activeEnvironment() != wanted)
            session->activateEnvironment(wanted, false);
    }
    Vs::Tasks* deferredTasks() override { return Application::get()->deferredTasks(); }
};

} // namespace

void installHost()
{
    static auto* const host = new ApplicationCommandHost;
    CommandHost::install(host);
}

} // namespace Vu
