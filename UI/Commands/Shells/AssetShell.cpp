#include "UI/Commands/Shells/AssetShell.h"

#include "Server/Base/Exception.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/ResourceMgr.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/Warning.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/View/ViewMgr.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/ArrangementSwap.h"
#include "UI/Commands/Shells/DeferredSessionReleaseTask.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <iterator>
#include <memory>
#include <tuple>

namespace Vu::Commands {
namespace {

std::wstring lastLayoutFile()
{
    return (Vs::PathInfo::optionsDirectory() / L"VULastDisplayedLayout.xml").wstring();
}

/// A file that cannot be read completely is reported and changes nothing: half a layout is useless.
void takeLastPlaces(Layout& layout)
{
    try {
        const std::wstring file = lastLayoutFile();
        if (!boost::filesystem::exists(file))
            return;
        Vs::Status status;
        const std::unique_ptr<Layout> last(Layout::load(file, std::wstring(), status));
        if (status.isError())
            Application::get()->inform(localizedFormat(
                "LastLayoutBroken", "The window starts with its default layout. %1%", status.toString()));
        else
            Layout::carryPlaces(*last, layout);
    } catch (const std::exception& error) {
        Vs::warn(Vs::Strings::fromBytes(error.what())); // The settings cannot be reached at all.
    }
}

const Vs::UniqueString* lockSource()
{
    static const Vs::UniqueString* const source = Vs::UniqueString::find("AssetSession", true);
    return source;
}

/// The n-th graphics view of a session; null past the end.
GraphicsView* viewOf(AssetSession* session, size_t index)
{
    ViewMgr* views = session ? session->viewManager() : nullptr;
    if (!views || index >= views->views().size())
        return nullptr;
    return Vs::cast<GraphicsView>(views->views()[index]);
}

bool isBeneath(const EnvironmentState* state, const EnvironmentState* top)
{
    do
        top = top ? top->returnState() : nullptr;
    while (top && top != state);
    return top != nullptr;
}

} // namespace

AssetShell* AssetShell::make(ShellMgr* manager)
{
    return new AssetShell(manager);
}

AssetShell::AssetShell(ShellMgr* manager) : Implements(manager)
{
    m_subscriptions.add(SplitViewEventSource::get(), this);
}

AssetShell::Hold AssetShell::holdOn(AssetSession* session)
{
    return {Vs::LockBase(lockSource(), session->documentSession()->document()),
            Vs::LockBase(lockSource(), session->asset())};
}

void AssetShell::currentAssetSession(AssetSession* session, bool flagA, bool flagB)
{
    if (session == m_current)
        return;
    m_current = session;
    SessionMgr* sessions = SessionMgr::get();
    sessions->currentAssetSession(session);
    if (isActiveShell()) {
        bindView(flagA, flagB);
        sessions->postActivate();
    }
    if (session)
        if (Workspace* workspace = WorkspaceMgr::activeWorkspace())
            workspace->resetCounter();
}

bool AssetShell::has(AssetSession* session) const
{
    return m_holds.find(session) != m_holds.end();
}

void AssetShell::add(AssetSession* session)
{
    if (m_holds.emplace(session, holdOn(session)).second)
        m_sessions.push_back(session);
}

void AssetShell::remove(AssetSession* session, bool activateDefault)
{
    // The session is closed with its document; neither may be closed while this runs.
    DocumentSession* document = session->documentSession();
    const Hold keep = holdOn(session);
    if (m_holds.erase(session) > 0) {
        // Of many, what came last goes first.
        m_sessions.erase(std::next(std::find(m_sessions.rbegin(), m_sessions.rend(), session)).base());
        if (session == m_current)
            currentAssetSession(nullptr, false, false);
    }
    Application::get()->deferredTasks()->add(new DeferredSessionReleaseTask(document));
    if (activateDefault && isActiveShell()) {
        shellManager()->pop();
        shellManager()->activateDefaultShell();
    }
}

AssetSession* AssetShell::neighbour(int step) const
{
    const auto current = std::find(m_sessions.begin(), m_sessions.end(), m_current);
    if (!m_current || current == m_sessions.end())
        return nullptr;
    const auto index = current - m_sessions.begin() + step;
    return index >= 0 && index < std::ssize(m_sessions) ? m_sessions[static_cast<size_t>(index)] : nullptr;
}

AssetSession* AssetShell::nextAssetSession() const
{
    return neighbour(1);
}

AssetSession* AssetShell::previousAssetSession() const
{
    return neighbour(-1);
}

/// The ordinary layout, with its areas where the last window left them. What the user wants to see of them is
/// known apart from that.
void AssetShell::firstLayout(ArrangementMgr* manager)
{
    std::unique_ptr<Layout> layout(Layout::load(Resources::AssetShellLayout()->localPath(), std::wstring()));
    takeLastPlaces(*layout);
    m_arrangement = Arrangement::make(manager, layout.release());
}

void AssetShell::onPostActivate()
{
    ArrangementMgr* arrangements = workspaceWindow()->arrangementManager();
    SessionMgr* sessions = SessionMgr::get();
    if (!m_arrangement)
        firstLayout(arrangements);
    sessions->currentAssetSession(m_current);
    sessions->preActivate();
    arrangements->arrangement(m_arrangement);
    SplitViewMgr::get()->updateViewsSize();
    sessions->activate();
    bindView(true, true);
    sessions->postActivate();
    Shell::onPostActivate();
}

void AssetShell::onPreDeactivate(Shell* next)
{
    Shell::onPreDeactivate(next);
    unbindView(nullptr);
    if (SessionMgr* sessions = SessionMgr::get())
        sessions->deactivate();
    if (m_arrangement)
        workspaceWindow()->arrangementManager()->remove(m_arrangement);
}

void AssetShell::onPostDeactivate()
{
    if (m_arrangement)
        try {
            Layout::persist(lastLayoutFile(), m_arrangement->layout());
        } catch (const Vs::Exception& error) {
            // The folder of the settings cannot be made; the shell closes anyway.
            Vs::warn(error.message());
        }
    Shell::onPostDeactivate();
}

GraphicsView* AssetShell::onView()
{
    return viewOf(m_current, 0);
}

GraphicsView* AssetShell::onNextView(GraphicsView* view)
{
    for (size_t i = 0; GraphicsView* candidate = viewOf(m_current, i); ++i)
        if (candidate == view)
            return viewOf(m_current, i + 1);
    return nullptr;
}

void AssetShell::updateArrangement(const std::wstring& filter)
{
    if (filter == m_filter)
        return;
    ArrangementMgr* arrangements = workspaceWindow()->arrangementManager();
    std::unique_ptr<Layout> layout(Layout::load(Resources::AssetShellLayout()->localPath(), filter));
    std::vector<Area*> canvases;
    layout->childrenByContents(Area::graphicsCanvas(), canvases);
    if (canvases.empty() && m_arrangement) {
        Application::get()->inform(localizedFormat(
            "NoSuchLayout", "There is no layout \"%1%\"; the views stay as they are.", filter));
        return;
    }
    m_filter = filter;
    Arrangement* old = m_arrangement;
    m_arrangement = Arrangement::make(arrangements, layout.release());
    if (old) {
        arrangements->remove(old);
        carryOver(*old, *m_arrangement);
        old->destroy();
    }
    arrangements->arrangement(m_arrangement);
    SplitViewMgr::get()->updateViewsSize();
    bindView(false, false);
}

void AssetShell::splitViewActivate(SplitViewEvent* event)
{
    auto* view = Vs::cast<AssetGraphicsView>(event->view());
    AssetSession* session = view ? view->assetSession() : nullptr;
    if (!session || session == m_current)
        return;
    currentAssetSession(session, false, false);
    std::ignore = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(
        L"SplitView.CancelCommandInOtherView"); // There may be none.
}

void AssetShell::seamlessActivate(EnvironmentState* state)
{
    AssetSession* session = state ? state->assetSession() : nullptr;
    if (!session)
        return;
    EnvironmentDefinition* wanted = state->environmentDefinition();
    if (session != m_current) {
        if (!has(session))
            add(session);
        if (session->activeEnvironment() != wanted)
            session->activateEnvironment(wanted, true);
        if (state->copyCameraOnReturn()) {
            GraphicsView* to = viewOf(session, 0);
            GraphicsView* from = viewOf(m_current, 0);
            if (to && from)
                to->copyCamera(*from);
        }
        currentAssetSession(session, false, false);
        shellManager()->activeShell(this);
    }
    // Within a component that is edited, another one can be: the same environment, on top of itself.
    if (session->activeEnvironment() != wanted || isBeneath(state, session->activeEnvironmentState()))
        session->activateEnvironment(wanted, false);
}

void AssetShell::seamlessReturn(EnvironmentState* state)
{
    if (state && state->returnState())
        seamlessActivate(state->returnState());
}

} // namespace Vu::Commands
