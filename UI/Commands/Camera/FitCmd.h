#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/Camera/CameraCmd.h"

namespace Vu::Commands {

/// Frames everything that the view shows.
class FitCmdDef : public RowDefinition<FitCmdDef, CameraCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class FitCmd : public Vs::Implements<FitCmd, SimpleCommand>
{
protected:
    friend class FitCmdDef;
    FitCmd(FitCmdDef* definition, CommandContext* context) : Implements(definition, context) {}

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
