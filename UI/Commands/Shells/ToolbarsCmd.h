#pragma once

#include "UI/Base/Command/InputControl.h"
#include "UI/Commands/Shells/WindowCmds.h"

#include <memory>
#include <vector>

namespace Vu::Commands {

class ToolbarsCmd;

/// The menu of the window's toolbars, with a check mark for each one shown. Changing a mark runs the command,
/// which also stores for the next start what the user has hidden. A toolbar hidden by full screen can be
/// brought back here.
class ToolbarsCmdDef
    : public CommandRowDefinition<ToolbarsCmdDef, ToolbarsCmd, CommandDefinition, IMenuControlHandler>
{
public:
    static const CommandRow kRow;

    /// Creates the only definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();

    /// "Toolbar": the identifier of the toolbar.
    static const Vs::UniqueString* toolbarArgumentName();
    /// "Visible": 1 to show it, 0 to hide it; toggles without it.
    static const Vs::UniqueString* visibleArgumentName();

    void onMenuSelectionChanged(MenuItem* item) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    InputControl* onInputControl() override;
    void onUpdateInputControl(CommandContext* context) override;

private:
    void fill();

    std::vector<std::unique_ptr<Info>> m_records;
    std::vector<std::unique_ptr<MenuItem>> m_items;
    std::unique_ptr<MenuControl> m_menu;
};

class ToolbarsCmd : public Vs::Implements<ToolbarsCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
    void onWindow(WorkspaceWindow&) override {}
};

} // namespace Vu::Commands
