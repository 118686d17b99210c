#include "UI/Base/Command/Private/CommandSteps.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/SteppedTransaction.h"
#include "Server/DataModel/Transaction.h"
#include "Server/DataModel/TransactionStepUserCache.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/Private/Localized.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>

namespace Vu {

namespace {

/// What follows the command's name in that of a step.
constexpr const wchar_t* kInnerStep = L" Inner Step";

std::unordered_map<const CommandBase*, std::unique_ptr<CommandSteps>>& all()
{
    static auto* const steps = new std::unordered_map<const CommandBase*, std::unique_ptr<CommandSteps>>;
    return *steps;
}

std::wstring nameOf(const CommandBase& command)
{
    const CommandDefinition* definition = command.commandDefinition();
    return definition ? definition->info()->name() : std::wstring();
}

} // namespace

CommandSteps* CommandSteps::find(const CommandBase* command)
{
    const auto found = all().find(command);
    return found == all().end() ? nullptr : found->second.get();
}

CommandSteps& CommandSteps::of(CommandBase& command)
{
    std::unique_ptr<CommandSteps>& steps = all()[&command];
    if (!steps)
        steps = std::make_unique<CommandSteps>(command);
    return *steps;
}

void CommandSteps::end(const CommandBase* command, bool keep)
{
    const auto node = all().extract(command);
    if (!node)
        return;
    CommandSteps& steps = *node.mapped();
    steps.m_open.reset();
    if (steps.m_whole && keep)
        steps.m_whole->commit();
    else if (steps.m_partOf && !keep)
        Vs::SteppedTransaction::undoTo(steps.m_partOf, steps.m_stepsBefore);
}

bool CommandSteps::areInputsRestored(const CommandBase* command)
{
    const CommandSteps* steps = find(command);
    return steps && steps->m_restoring;
}

CommandSteps::CommandSteps(CommandBase& command) : m_command(command), m_values{inputValues()} {}

CommandSteps::~CommandSteps() = default;

CommandSteps::Values CommandSteps::inputValues() const
{
    Values values;
    if (const CommandInputSet* inputs = m_command.commandInputSet())
        for (const auto& input : inputs->inputs())
            values.push_back(input->valueAsString());
    return values;
}

void CommandSteps::restoreInputs()
{
    const CommandInputSet* inputs = m_command.commandInputSet();
    if (!inputs)
        return;
    const Values& values = m_values[m_done];
    m_restoring = true;
    for (size_t i = 0; i < std::min(values.size(), inputs->inputs().size()); ++i)
        if (inputs->inputs()[i]->valueAsString() != values[i])
            std::ignore = inputs->inputs()[i]->take(values[i]); // It was a value of this input.
    m_restoring = false;
}

void CommandSteps::inputSettled(const CommandInputBase* input)
{
    const auto& inputs = m_command.commandInputSet()->inputs();
    Values& values = m_values[m_done];
    values.resize(inputs.size());
    for (size_t i = 0; i < inputs.size(); ++i)
        if (inputs[i].get() == input)
            values[i] = input->valueAsString();
}

bool CommandSteps::isOpenOneChanged() const
{
    return m_open && m_open->isChanged();
}

bool CommandSteps::begin(Vs::Asset* asset)
{
    if (!asset)
        return true;
    if (!m_whole && !Vs::SteppedTransaction::isOpen(asset)) {
        m_whole = std::make_unique<Vs::SteppedTransaction>(asset, nameOf(m_command));
    } else if (!m_whole && !m_partOf) {
        m_partOf = asset;
        m_stepsBefore = Vs::SteppedTransaction::steps(asset);
    }
    m_open = std::make_unique<Vs::Transaction>(asset, nameOf(m_command) + kInnerStep);
    return m_whole != nullptr;
}

void CommandSteps::keep(bool undoable)
{
    if (!undoable) {
        m_done = 0;
        m_values.clear();
    } else {
        m_values.resize(++m_done);
    }
    m_values.push_back(inputValues());
    if (!m_open)
        return;
    std::shared_ptr<Vs::TransactionStepUserCache> cache;
    if (undoable)
        cache = std::make_shared<Vs::TransactionStepUserCache>(
            localizedFormat("CommandStep", "%1% - Step %2%", nameOf(m_command), m_done));
    m_open->commit(std::move(cache));
    m_open.reset();
}

void CommandSteps::abandon()
{
    m_open.reset();
}

void CommandSteps::undo()
{
    Vs::require(m_done > 0, "there is a step to take back");
    if (m_whole)
        m_whole->undoStep();
    --m_done;
    restoreInputs();
}

void CommandSteps::redo()
{
    Vs::require(m_done + 1 < m_values.size(), "there is a step to do again");
    if (m_whole)
        m_whole->redoStep();
    ++m_done;
    restoreInputs();
}

} // namespace Vu
