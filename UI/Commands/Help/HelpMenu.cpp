#include "UI/Commands/Help/HelpMenu.h"

#include "Server/DataModel/ApplicationEditionService.h"
#include "UI/Base/Program/Application.h"

namespace Vu::Commands {

HelpMenuCmd::HelpMenuCmd(CommandDefinition* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

std::wstring editionAddress(EditionAddress address)
{
    const auto* edition = Application::get()->service<Vs::Services::ApplicationEditionService>();
    return edition ? (edition->*address)() : std::wstring();
}

} // namespace Vu::Commands
