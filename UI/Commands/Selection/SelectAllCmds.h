#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// What the commands on the selection as a whole have in common: the active command goes on meanwhile.
class WholeSelectionCmd : public Vs::Implements<WholeSelectionCmd, SimpleCommand>
{
public:
    WholeSelectionCmd(CommandDefinition* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
};

class SelectAllCmd;

/// Selects all parts that are visible.
class SelectAllCmdDef : public CommandRowDefinition<SelectAllCmdDef, SelectAllCmd>
{
public:
    static const CommandRow kRow;

    /// Makes the one definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override { return hasAssetSession(context); }
};

class SelectAllCmd : public Vs::Implements<SelectAllCmd, WholeSelectionCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class InvertSelectionCmd;

/// Selects the visible parts that aren't selected, in place of those that are. Of what is selected in a part,
/// the part counts as selected.
class InvertSelectionCmdDef : public CommandRowDefinition<InvertSelectionCmdDef, InvertSelectionCmd>
{
public:
    static const CommandRow kRow;

    /// As SelectAllCmdDef's.
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override { return hasAssetSession(context); }
};

class InvertSelectionCmd : public Vs::Implements<InvertSelectionCmd, WholeSelectionCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
