#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <string>

namespace Vs::Services {
class ApplicationEditionService;
}

namespace Vu::Commands {

/// A web address configured by the edition of the program; empty if there is none.
using EditionAddress = std::wstring (Vs::Services::ApplicationEditionService::*)() const;
std::wstring editionAddress(EditionAddress address);

/// Base of the commands of the help menu: the active command continues meanwhile, and repeat ignores them.
class HelpMenuCmd : public Vs::Implements<HelpMenuCmd, SimpleCommand>
{
public:
    HelpMenuCmd(CommandDefinition* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
};

} // namespace Vu::Commands
