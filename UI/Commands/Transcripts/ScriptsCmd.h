#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/OwnedList.h"

namespace Vu::Commands {

class ScriptsCmd;

/// The list of what scripts provide: the commands they define, then the scripts in the user's folder. It is
/// reloaded each time.
class ScriptsCmdDef
    : public CommandRowDefinition<ScriptsCmdDef, ScriptsCmd, CommandDefinition, IListControlHandler>
{
public:
    static const CommandRow kRow;

    /// Creates the only definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();

    void onListSelectionChanged(Info* item) override;

protected:
    InputControl* onInputControl() override;
    void onUpdateInputControl(CommandContext* context) override;

private:
    void refresh();

    OwnedList m_list;
};

/// Does nothing: the list is the command.
class ScriptsCmd : public Vs::Implements<ScriptsCmd, SimpleCommand>
{
public:
    ScriptsCmd(ScriptsCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status&) override {}
};

} // namespace Vu::Commands
