#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/OwnedList.h"

#include <string>
#include <vector>

namespace Vu::Commands {

class RecordMacroCmd;

/// Records a macro. The argument "Name" is asked for unless the context has it; StopTranscriptingCommand ends
/// the recording.
class RecordMacroCmdDef : public CommandRowDefinition<RecordMacroCmdDef, RecordMacroCmd>
{
public:
    static const CommandRow kRow;
    static const Vs::UniqueString* nameArgument();

protected:
    void onUpdateInputControl(CommandContext* context) override;
};

class RecordMacroCmd : public Vs::Implements<RecordMacroCmd, SimpleCommand>
{
public:
    RecordMacroCmd(CommandDefinition* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

/// A list of macros that acts on the chosen one. It is reloaded each time.
class MacroListCmdDef : public Vs::Implements<MacroListCmdDef, CommandDefinition, IListControlHandler>
{
public:
    using Names = std::vector<std::wstring> (*)();
    using Choose = void (*)(const std::wstring& name);
    MacroListCmdDef(Info* info, Names names, Choose choose);
    ~MacroListCmdDef() override;

    void onListSelectionChanged(Info* item) override;

protected:
    InputControl* onInputControl() override;
    void onUpdateInputControl(CommandContext* context) override;
    CommandBase* onCreateCommand(CommandContext* context) override;

private:
    void refresh();

    Names m_names;
    Choose m_choose;
    OwnedList m_list;
};

/// The definitions of these commands, which aren't among the add-in's members.
void createMacroCommandDefs();

} // namespace Vu::Commands
