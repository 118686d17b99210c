#pragma once

#include "UI/Base/Workspace/Area.h"
#include "UI/Commands/Shells/WindowCmds.h"

namespace Vu::Commands {

/// Shows or hides all areas of the window with these contents. Neither command writes an option: the layout
/// stores the user's choice of toolbars.
void toolbarVisibility(WorkspaceWindow& window, const char* contents, bool show);

class ShowCommandToolbarCmd;

class ShowCommandToolbarCmdDef : public CommandRowDefinition<ShowCommandToolbarCmdDef, ShowCommandToolbarCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class ShowCommandToolbarCmd : public Vs::Implements<ShowCommandToolbarCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onWindow(WorkspaceWindow& window) override { toolbarVisibility(window, "CommandToolbar", true); }
};

class HideCommandToolbarCmd;

class HideCommandToolbarCmdDef : public CommandRowDefinition<HideCommandToolbarCmdDef, HideCommandToolbarCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class HideCommandToolbarCmd : public Vs::Implements<HideCommandToolbarCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onWindow(WorkspaceWindow& window) override { toolbarVisibility(window, "CommandToolbar", false); }
};

class ShowNavigationToolbarCmd;

class ShowNavigationToolbarCmdDef
    : public CommandRowDefinition<ShowNavigationToolbarCmdDef, ShowNavigationToolbarCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class ShowNavigationToolbarCmd : public Vs::Implements<ShowNavigationToolbarCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onWindow(WorkspaceWindow& window) override { toolbarVisibility(window, "NavToolbar", true); }
};

class HideNavigationToolbarCmd;

class HideNavigationToolbarCmdDef
    : public CommandRowDefinition<HideNavigationToolbarCmdDef, HideNavigationToolbarCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class HideNavigationToolbarCmd : public Vs::Implements<HideNavigationToolbarCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onWindow(WorkspaceWindow& window) override { toolbarVisibility(window, "NavToolbar", false); }
};

/// A command that docks one of the two areas with the toolbars of the model; each names the area that it
/// docks. If that one is docked already, the other area is, so that each command restores what the other
/// removes.
class DockCmdDefBase : public Vs::Implements<DockCmdDefBase, CommandDefinition>
{
public:
    const wchar_t* areaName() const { return m_area; }
    EPlacement target() const { return m_target; }

protected:
    using Implements::Implements;
    void docks(const wchar_t* area, EPlacement target)
    {
        m_area = area;
        m_target = target;
    }
    bool onIsApplicable(CommandContext* context) const override;

private:
    const wchar_t* m_area = nullptr;
    EPlacement m_target = EPlacement::Top;
};

class DockCmdBase : public Vs::Implements<DockCmdBase, OnWindowCmd>
{
public:
    DockCmdBase(DockCmdDefBase* definition, CommandContext* context);

protected:
    void onWindow(WorkspaceWindow& window) override;

private:
    const DockCmdDefBase& m_definition;
};

class DockToBottomCmd;

class DockAssetToolbarsToBottomCmdDef
    : public CommandRowDefinition<DockAssetToolbarsToBottomCmdDef, DockToBottomCmd, DockCmdDefBase>
{
public:
    static const CommandRow kRow;
    DockAssetToolbarsToBottomCmdDef() { docks(L"CommandToolbarQuillet3", EPlacement::Bottom); }
};

class DockToBottomCmd : public Vs::Implements<DockToBottomCmd, DockCmdBase>
{
public:
    using Implements::Implements;
};

class DockToTopCmd;

class DockAssetToolbarsToTopCmdDef
    : public CommandRowDefinition<DockAssetToolbarsToTopCmdDef, DockToTopCmd, DockCmdDefBase>
{
public:
    static const CommandRow kRow;
    DockAssetToolbarsToTopCmdDef() { docks(L"CommandToolbarNew", EPlacement::Top); }
};

class DockToTopCmd : public Vs::Implements<DockToTopCmd, DockCmdBase>
{
public:
    using Implements::Implements;
};

} // namespace Vu::Commands
