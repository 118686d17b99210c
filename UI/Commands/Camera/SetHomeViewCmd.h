#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/Camera/CameraCmd.h"

namespace Vu::Commands {

class SetHomeViewCmd;

/// Makes Home look at the model as the view does now: a setting of the model, as one undo step.
class SetHomeViewCmdDef : public CommandRowDefinition<SetHomeViewCmdDef, SetHomeViewCmd, CameraCmdDef>
{
public:
    static const CommandRow kRow;

    /// Makes the one definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();
};

class SetHomeViewCmd : public Vs::Implements<SetHomeViewCmd, SimpleCommand>
{
public:
    SetHomeViewCmd(SetHomeViewCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
