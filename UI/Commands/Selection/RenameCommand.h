#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Gives the selected components another name.
class RenameCommandDef : public RowDefinition<RenameCommandDef>
{
public:
    static const CommandRow kRow;
    /// "NewName".
    static const Vs::UniqueString* newNameArgument();

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// What can't be renamed keeps its name, and nothing is said.
class RenameCommand : public Vs::Implements<RenameCommand, SimpleCommand>
{
protected:
    friend class RenameCommandDef;
    using Implements::Implements;
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
