#include "UI/Base/Command/TextRows.h"

#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/ForwardedRun.h"

namespace Vu {

RowWrapper::RowWrapper(const WrapperRow& row)
    : TranscriptedCommandTextCommand(row.area, row.name, row.help, row.format, false, row.info()->key()),
      m_row(row)
{
}

Vs::TextCommandResult RowWrapper::execute(const Vs::TextCommandParameters& parameters)
{
    if (m_row.refusal) {
        CommandContext context = CommandContext::activeContext();
        if (std::wstring why = m_row.refusal(context); !why.empty())
            return {1, std::move(why)};
    }
    return TranscriptedCommandTextCommand::execute(parameters);
}

void RowWrapper::fillContext(const Vs::TextCommandParameters& parameters, CommandContext& context)
{
    if (m_row.global)
        useGlobalCmdMgr(true);
    if (m_row.flush)
        flushDeferredTasks(true);
    if (m_row.fillContext)
        m_row.fillContext(parameters, context);
}

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

} // namespace Vu
