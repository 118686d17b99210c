// The subject area "Commands": runs any definition by its key, so that those without a text command of their
// own can be reached from a line as well.

#include "Server/Base/NumberText.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TextCompletion.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/CommandArguments.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/CommitRefusal.h"
#include "UI/Base/Command/TextRows.h"

namespace Vu {

namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Commands";

constexpr AreaRow kCommandsAreaRow = {kArea,
                                      L"Commands that run any command of the program by its identifier"};

/// A number that would not be written back the same way is kept as text, because the digits may be a name.
template <class Number>
std::optional<Number> plainNumber(const std::wstring& text)
{
    const std::optional<Number> number = Vs::readNumber<Number>(text);
    return number && Vs::numberText(*number) == text ? number : std::nullopt;
}

void addGuessed(CommandContext& context, const Vs::UniqueString* key, const std::wstring& value)
{
    if (const auto integer = plainNumber<int>(value))
        context.addArgument(key, *integer);
    else if (const auto real = plainNumber<double>(value))
        context.addArgument(key, *real);
    else
        context.addArgument(key, value);
}

/// The command that the user would call the running one: the active asset's, or else the whole program's.
CommandBase* runningCommand()
{
    if (CommandBase* active = CommandBase::getActiveCommand())
        return active;
    return CommandMgr::get()->activeCommand();
}

std::vector<std::wstring> identifiers()
{
    std::vector<std::wstring> ids;
    for (const CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions())
        ids.push_back(definition->id());
    return ids;
}

class TextCmdCommandsStart : public Vs::PythonEntry<TextCmdCommandsStart, Vs::TextCommand>
{
public:
    TextCmdCommandsStart()
        : PythonEntry(
              kArea, L"Start",
              L"<id> [<argument>=<value> ...] Runs the command with the identifier and the arguments; the "
              L"argument of a file is called Path.",
              "", true, true)
    {
        Vs::TextCompletion::firstParameter(L"Commands.Start", identifiers);
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No command identifier specified as parameter; see Commands.List"};
        CommandContext context = CommandContext::activeContext();
        context.accessPoint(ECommandAccessPoint::TextLine);
        for (unsigned i = 1; i < parameters.parameters(); ++i) {
            const std::wstring& parameter = parameters[i];
            const size_t sign = parameter.find(L'=');
            if (sign == std::wstring::npos || sign == 0)
                return {1, L"Parameter " + std::to_wstring(i + 1) +
                               L" is not of the form <argument>=<value>: " + parameter};
            const Vs::UniqueString* key =
                Vs::UniqueString::find(Vs::Strings::narrow(parameter.substr(0, sign)));
            if (key == CommandContext::pathArgumentName())
                context.addArgument(key, Vs::TranscriptMgr::get()->locate(parameter.substr(sign + 1)));
            else
                addGuessed(context, key, parameter.substr(sign + 1));
        }
        if (CommandDefinition* definition =
                CommandDefinitionMgr::get()->findCommandDefinitionById(parameters[0])) {
            Vs::Status status;
            const auto& known = definition->info()->arguments();
            if (known && !hasOnlyKnownArguments(context, definition->info()->name(), *known, status))
                return answerOf(status);
            return answerOf(definition->executeCommand(context));
        }
        return answerOf(CommandMgr::get()->executeCommand(parameters[0], context));
    }
};

class TextCmdCommandsCommit : public Vs::PythonEntry<TextCmdCommandsCommit, Vs::TextCommand>
{
public:
    TextCmdCommandsCommit() : PythonEntry(kArea, L"Commit", L"Commits the running command.", "", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters&) override
    {
        CommandBase* command = runningCommand();
        if (!command)
            return {1, L"No command is running."};
        if (const std::wstring why = whyNotCommitted(*command); !why.empty())
            return {1, why};
        command->destroy(ETerminationReason::Commit);
        return {0, {}};
    }
};

class TextCmdCommandsCancel : public Vs::PythonEntry<TextCmdCommandsCancel, Vs::TextCommand>
{
public:
    TextCmdCommandsCancel() : PythonEntry(kArea, L"Cancel", L"Cancels the running command.", "", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters&) override
    {
        CommandBase* command = runningCommand();
        if (!command)
            return {1, L"No command is running."};
        command->destroy(ETerminationReason::Cancel);
        return {0, {}};
    }
};

class TextCmdCommandsList : public Vs::PythonEntry<TextCmdCommandsList, Vs::TextCommand>
{
public:
    TextCmdCommandsList()
        : PythonEntry(kArea, L"List", L"Lists the identifiers and titles of all commands.", "", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters&) override
    {
        std::wstring list;
        for (const CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions())
            list += (list.empty() ? L"" : L"\n") + definition->id() + L"  " + definition->info()->name();
        return {0, list};
    }
};

const SubjectArea<kCommandsAreaRow> kCommandsArea;
TextCmdCommandsStart kStart;
TextCmdCommandsCommit kCommit;
TextCmdCommandsCancel kCancel;
TextCmdCommandsList kList;

} // namespace

} // namespace Vu
