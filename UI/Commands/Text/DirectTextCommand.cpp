#include "UI/Commands/Text/DirectTextCommand.h"

#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/ForwardedRun.h"

namespace Vu::Commands {

Vs::TextCommandResult answerOf(const Vs::Status& status)
{
    return {status.isError() ? 1u : 0u, status.toString()};
}

Vs::TextCommandResult runDefinition(std::wstring_view id, CommandContext context,
                                    const Vs::TextCommandParameters& parameters)
{
    CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(id);
    if (!definition)
        return {1, L"The command " + std::wstring(id) + L" is not there; its add-in is not loaded."};
    context.executeImmediately(!parameters.viaUI());
    CommandMgr* manager = CommandMgr::getActiveCommandManager();
    if (!manager)
        manager = CommandMgr::get();
    const ForwardedRun forwarded;
    return answerOf(manager->executeCommand(definition, context));
}

} // namespace Vu::Commands
