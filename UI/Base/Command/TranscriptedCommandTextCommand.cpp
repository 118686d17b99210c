#include "UI/Base/Command/TranscriptedCommandTextCommand.h"

#include "Server/Base/Require.h"
#include "Server/Base/Task.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/CommandHost.h"

#include <unordered_map>
#include <utility>

namespace Vu {
namespace {

using Wrappers = std::unordered_map<std::wstring, const TranscriptedCommandTextCommand*>;

Wrappers& wrappers()
{
    // Never destroyed: the wrappers are statics of many libraries, and each takes itself out when it goes.
    static auto* const all = new Wrappers;
    return *all;
}

} // namespace

TranscriptedCommandTextCommand::TranscriptedCommandTextCommand(std::wstring area, std::wstring name,
                                                               std::wstring help, std::string format,
                                                               bool flag, std::wstring definitionKey)
    : TextCommand(std::move(area), std::move(name), std::move(help), std::move(format), flag, true),
      m_definitionKey(std::move(definitionKey))
{
    Vs::require(!m_definitionKey.empty(), "a wrapper names the definition that it runs");
    wrappers().emplace(m_definitionKey, this);
}

TranscriptedCommandTextCommand::~TranscriptedCommandTextCommand()
{
    const auto found = wrappers().find(m_definitionKey);
    if (found != wrappers().end() && found->second == this)
        wrappers().erase(found);
}

const TranscriptedCommandTextCommand* TranscriptedCommandTextCommand::of(const std::wstring& definitionKey)
{
    const auto found = wrappers().find(definitionKey);
    return found == wrappers().end() ? nullptr : found->second;
}

bool TranscriptedCommandTextCommand::repeats(const std::vector<std::wstring>& parameters,
                                             const CommandContext& context) const
{
    CommandContext made = CommandContext::emptyContext();
    try {
        // It fills the context that it is given; everything else about the run is asked for each time.
        const_cast<TranscriptedCommandTextCommand*>(this)->fillContext({parameters, {}}, made);
    } catch (const std::exception&) {
        return false;
    }
    bool same = made.arguments() == context.arguments();
    for (size_t i = 0; same && i < made.arguments(); ++i) {
        const Vs::UniqueString* name = made.argumentName(i);
        same = context.hasArgument(name) && made.argumentAsString(name) == context.argumentAsString(name);
    }
    return same;
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
    // The run may re-enter this very object, through a line that a command runs, so what was asked for is
    // read now.
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
