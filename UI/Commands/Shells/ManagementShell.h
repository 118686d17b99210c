#pragma once

#include "UI/Commands/Shells/SceneBasedShell.h"

namespace Vu {
class Arrangement;
class ShellMgr;
} // namespace Vu

namespace Vu::Commands {

/// The home screen of a workspace: shown when no asset shell is on top.
class ManagementShell : public Vs::Implements<ManagementShell, SceneBasedShell>
{
public:
    static ManagementShell* make(ShellMgr* manager);
    ~ManagementShell() override;

protected:
    void onPostActivate() override;
    void onPreDeactivate(Shell* next) override;
    void onPostDeactivate() override;
    GraphicsView* onView() override;
    GraphicsView* onNextView(GraphicsView* view) override;

private:
    explicit ManagementShell(ShellMgr* manager);

    Arrangement* m_arrangement = nullptr; ///< Created at the first activation; destroyed by the destructor.
};

} // namespace Vu::Commands
