#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Base of the commands on the selection as a whole: the active command continues meanwhile.
class WholeSelectionCmd : public Vs::Implements<WholeSelectionCmd, SimpleCommand>
{
public:
    WholeSelectionCmd(CommandDefinition* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
};

class SelectAllCmd;

/// Selects all visible parts.
class SelectAllCmdDef : public CommandRowDefinition<SelectAllCmdDef, SelectAllCmd>
{
public:
    static const CommandRow kRow;

    /// Creates the only definition of this class at the first call. It isn't among the add-in's members.
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

/// Inverts the selection among the visible parts. A part counts as selected if anything in it is.
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
