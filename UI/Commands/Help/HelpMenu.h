#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <string>

namespace Vs::Services {
class ApplicationEditionService;
}

namespace Vu::Commands {

/// An address that the edition of the program names; empty where it has none.
using EditionAddress = std::wstring (Vs::Services::ApplicationEditionService::*)() const;
std::wstring editionAddress(EditionAddress address);

/// What the commands of the help menu have in common: the active command goes on meanwhile, and nothing is
/// repeated.
class HelpMenuCmd : public Vs::Implements<HelpMenuCmd, SimpleCommand>
{
public:
    HelpMenuCmd(CommandDefinition* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
};

} // namespace Vu::Commands
