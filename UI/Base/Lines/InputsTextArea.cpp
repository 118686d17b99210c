// The part of the subject area "Commands" that fills in the inputs of the running command, as a user does in
// its panel.

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/Localized.h"

namespace Vu {

namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Commands";

/// Null if no command with inputs is running.
CommandInputSet* runningInputs()
{
    CommandBase* command = CommandBase::getActiveCommand();
    if (!command)
        command = CommandMgr::get()->activeCommand();
    return command ? command->commandInputSet() : nullptr;
}

std::wstring noInputs()
{
    return localized("NoInputs", "No command that has inputs is running.");
}

std::wstring keysOf(const CommandInputSet& inputs)
{
    std::wstring keys;
    for (const auto& input : inputs.inputs())
        keys += (keys.empty() ? L"" : L", ") + input->info()->key();
    return keys;
}

class TextCmdCommandsSetInput : public Vs::PythonEntry<TextCmdCommandsSetInput, Vs::TextCommand>
{
public:
    TextCmdCommandsSetInput()
        : PythonEntry(
              kArea, L"SetInput",
              L"<input> <value> Sets an input of the running command to a value, such as \"12.5 mm\".",
              "%s%s", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const CommandInputSet* inputs = runningInputs();
        if (!inputs)
            return {1, noInputs()};
        CommandInputBase* input = inputs->findInput(parameters[0]);
        if (!input)
            return {1, localizedFormat("UnknownInput", "There is no input \"%1%\"; there are: %2%.",
                                       parameters[0], keysOf(*inputs))};
        if (!input->isUsable() || !input->isShown() || input->readOnly())
            return {1, localizedFormat("InputNotUsable", "\"%1%\" can't be set now.", parameters[0])};
        // The change may end the command, and the input with it.
        const CommandInUse inUse(inputs->command());
        const std::wstring refusal = input->take(parameters[1]);
        return {refusal.empty() ? 0u : 1u, refusal};
    }
};

class TextCmdCommandsInputs : public Vs::PythonEntry<TextCmdCommandsInputs, Vs::TextCommand>
{
public:
    TextCmdCommandsInputs()
        : PythonEntry(
              kArea, L"Inputs",
              L"Lists the inputs of the running command with their values, and what is wrong with them.", "",
              true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters&) override
    {
        const CommandInputSet* inputs = runningInputs();
        if (!inputs)
            return {1, noInputs()};
        std::wstring list;
        for (const auto& input : inputs->inputs()) {
            if (!input->isShown())
                continue;
            list += (list.empty() ? L"" : L"\n") + input->info()->key() + L" " +
                    Vs::Strings::quote(input->valueAsString());
            if (!input->isUsable())
                list += L"  " + localized("InputDisabled", "(disabled)");
            else if (const std::wstring why = input->whyInvalid(); !why.empty())
                list += L"  " + why;
        }
        return {0, list};
    }
};

TextCmdCommandsSetInput kSetInput;
TextCmdCommandsInputs kInputs;

} // namespace

} // namespace Vu
