#include "UI/Commands/Camera/CameraCmd.h"

#include "UI/Commands/Camera/ActiveView.h"

namespace Vu::Commands {

const Vs::UniqueString* CameraCmdDef::passiveArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Passive", true);
    return name;
}

const CommandContext& CameraCmdDef::passiveContext()
{
    static const CommandContext* const context = [] {
        auto* made = new CommandContext(CommandContext::emptyContext());
        made->addArgument(passiveArgumentName(), 1);
        return made;
    }();
    return *context;
}

bool CameraCmdDef::passive(CommandContext* context)
{
    int passive = 0;
    context->argument(passiveArgumentName(), CommandContext::EArgType::Int, &passive);
    return passive == 1;
}

bool CameraCmdDef::onIsApplicable(CommandContext* context) const
{
    return graphicsViewOf(context->assetSession()) != nullptr;
}

} // namespace Vu::Commands
