#include "UI/Base/Command/TranscriptedCommandTextCommand.h"

#include "Server/Base/Task.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandHost.h"
#include "UI/Base/Command/CommandMgr.h"

#include <utility>

namespace Vu {

TranscriptedCommandTextCommand::TranscriptedCommandTextCommand(std::wstring area, std::wstring name,
                                                               std::wstring help, std::string format,
                                                               bool flag, std::wstring definitionKey)
    : TextCommand(std::move(area), std::move(name), std::move(help), std::move(format), flag, true),
      m_definitionKey(std::move(definitionKey))
{
}

CommandDefinition* TranscriptedCommandTextCommand::definition() const
{
    CommandDefinitionMgr* definitions = CommandDefinitionMgr::get();
    if (m_generation != definitions->generation()) {
        m_definition = definitions->findCommandDefinitionById(m_definitionKey);
        m_generation = definitions->generation();
    }
    return m_definition;
}

Vs::TextCommandResult TranscriptedCommandTextCommand::execute(const Vs::TextCommandParameters& parameters)
{
    CommandDefinition* const found = definition();
    if (!found)
        return {1, L"The command \"" + m_definitionKey + L"\" is not available."};

    CommandContext context = CommandContext::activeContext();
    context.accessPoint(ECommandAccessPoint::TextLine);
    m_useGlobalCmdMgr = false;
    m_flushDeferredTasks = false;
    fillContext(parameters, context);
    // The run may come back to this very object, by a line that a command runs: what was asked for is read
    // now.
    const bool flush = m_flushDeferredTasks;
    const Vs::Status status = m_useGlobalCmdMgr ? CommandMgr::get()->executeCommand(found, context)
                                                : found->executeCommand(context);
    if (flush)
        if (Vs::Tasks* tasks = CommandHost::get()->deferredTasks())
            tasks->flush();
    if (status.isOk() && status.warnings().empty())
        return {0, {}};
    return {status.isOk() ? 0u : 1u, status.toString()};
}

void TranscriptedCommandTextCommand::fillContext(const Vs::TextCommandParameters&, CommandContext&) {}

} // namespace Vu
