#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class ViewEnvironmentFileCmd;

/// Makes a panorama in a file (.hdr) the environment of all views.
class ViewEnvironmentFileCmdDef
    : public CommandRowDefinition<ViewEnvironmentFileCmdDef, ViewEnvironmentFileCmd>
{
public:
    static const CommandRow kRow;
};

class ViewEnvironmentFileCmd : public Vs::Implements<ViewEnvironmentFileCmd, SimpleCommand>
{
public:
    ViewEnvironmentFileCmd(ViewEnvironmentFileCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
