#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class RenameCommand;

/// Gives the selected components another name.
class RenameCommandDef : public CommandRowDefinition<RenameCommandDef, RenameCommand>
{
public:
    static const CommandRow kRow;
    /// "NewName".
    static const Vs::UniqueString* newNameArgument();
};

/// What can't be renamed keeps its name, and nothing is said.
class RenameCommand : public Vs::Implements<RenameCommand, SimpleCommand>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
