#include "UI/Commands/Help/AboutBoxCmd.h"

#include "UI/Base/Program/Application.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow AboutBoxCmdDef::kRow = {
    .key = L"AboutBoxCommand", .title = "About",
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

bool AboutBoxCmdDef::onIsApplicable(CommandContext*) const
{
    return true;
}

bool AboutBoxCmdDef::onIsVisible(CommandContext*) const
{
    return true;
}

AboutBoxCmd::AboutBoxCmd(AboutBoxCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType AboutBoxCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void AboutBoxCmd::onExecute(Vs::Status&)
{
    Application::get()->showAboutBox(false);
}

} // namespace Vu::Commands
