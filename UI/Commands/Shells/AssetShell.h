#pragma once

#include "Server/Base/LockBase.h"
#include "UI/Base/View/SplitViewEvents.h"
#include "UI/Commands/Shells/SceneBasedShell.h"

#include <map>
#include <string>
#include <vector>

namespace Vu {
class Arrangement;
class ArrangementMgr;
class AssetSession;
class EnvironmentState;
class Layout;
class ShellMgr;
} // namespace Vu

namespace Vu::Commands {

/// The modelling shell: canvas, browser, toolbars. Lists the asset sessions open in its workspace, in the
/// order in which they were added, and keeps their documents and assets open while they are listed.
class AssetShell
    : public Vs::Implements<AssetShell, SceneBasedShell, SplitViewEventSite, ISplitViewArrangement>
{
public:
    static AssetShell* make(ShellMgr* manager);

    /// Null until the first activation.
    Arrangement* arrangement() const { return m_arrangement; }

    const std::vector<AssetSession*>& assetSessions() const { return m_sessions; }
    AssetSession* currentAssetSession() const { return m_current; }
    /// Makes the session, which may be null, the current one; does nothing if it is already. The flags are
    /// passed on to the canvases. The session need not be listed.
    void currentAssetSession(AssetSession* session, bool flagA, bool flagB);

    bool has(AssetSession* session) const;
    void add(AssetSession* session);
    /// Removes the session. Its document stays open until the deferred tasks have run. With
    /// `activateDefault`, an active shell gives way to the default one.
    void remove(AssetSession* session, bool activateDefault);

    /// The listed session after, or before, the current one; null at the ends of the list.
    AssetSession* nextAssetSession() const;
    AssetSession* previousAssetSession() const;

    /// Enters the environment of `state`, or returns to the one it came from, without changing the shell.
    void seamlessActivate(EnvironmentState* state);
    void seamlessReturn(EnvironmentState* state);

    void updateArrangement(const std::wstring& filter) override;
    std::wstring arrangementFilter() const override { return m_filter; }
    void splitViewActivate(SplitViewEvent* event) override;

protected:
    void onPostActivate() override;
    void onPreDeactivate(Shell* next) override;
    void onPostDeactivate() override;
    GraphicsView* onView() override;
    GraphicsView* onNextView(GraphicsView* view) override;

private:
    /// Keeps a listed session's document and asset open.
    struct Hold
    {
        Vs::LockBase document;
        Vs::LockBase asset;
    };

    explicit AssetShell(ShellMgr* manager);
    void firstLayout(ArrangementMgr* manager);
    static Hold holdOn(AssetSession* session);
    AssetSession* neighbour(int step) const;

    AssetSession* m_current = nullptr;
    Arrangement* m_arrangement = nullptr; ///< Belongs to the window's ArrangementMgr.
    std::map<AssetSession*, Hold> m_holds;
    std::vector<AssetSession*> m_sessions;
    std::wstring m_filter;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
