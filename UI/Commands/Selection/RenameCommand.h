#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class RenameCommand;

/// Renames the selected components.
class RenameCommandDef : public CommandRowDefinition<RenameCommandDef, RenameCommand>
{
public:
    static const CommandRow kRow;
    /// "NewName".
    static const Vs::UniqueString* newNameArgument();
};

/// Components that can't be renamed keep their names, without a message.
class RenameCommand : public Vs::Implements<RenameCommand, SimpleCommand>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
