#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/Camera/CameraCmd.h"

namespace Vu::Commands {

class FitCmd;

/// Frames everything that the view shows.
class FitCmdDef : public CommandRowDefinition<FitCmdDef, FitCmd, CameraCmdDef>
{
public:
    static const CommandRow kRow;
};

class FitCmd : public Vs::Implements<FitCmd, SimpleCommand>
{
public:
    FitCmd(FitCmdDef* definition, CommandContext* context) : Implements(definition, context) {}

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
