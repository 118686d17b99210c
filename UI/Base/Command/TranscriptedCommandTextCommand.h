#pragma once

#include "Server/Base/TextCommand.h"

#include <string>

namespace Vu {

class CommandContext;
class CommandDefinition;

/// A text command that runs a command definition by the same route as a click: what it does is recorded like
/// one. It makes a context from what is active, lets `fillContext` add the arguments, and runs the definition
/// in the manager of the active asset session (the global one if none is active). Whether the definition is
/// applicable is not asked. The answer is 1 with the status' text if the status holds an error, else 0 with
/// its warnings.
///
/// Derived classes are objects with static storage.
class TranscriptedCommandTextCommand : public Vs::TextCommand
{
public:
    /// `definitionKey` is the key of the definition's Info; it is looked up when the line is first run.
    TranscriptedCommandTextCommand(std::wstring area, std::wstring name, std::wstring help,
                                   std::string format, bool flag, std::wstring definitionKey);

    ~TranscriptedCommandTextCommand() override;

    /// The wrapper of a definition, the first if there are several; null if it has none.
    [[nodiscard]] static const TranscriptedCommandTextCommand* of(const std::wstring& definitionKey);
    /// The parameters of a line for a recording, made of the texts of the context's arguments in their order;
    /// the default takes all as they are. `repeats` tells whether they suffice.
    virtual std::vector<std::wstring> parametersFor(const CommandContext&,
                                                    std::vector<std::wstring> texts) const
    {
        return texts;
    }
    /// Whether a line with these parameters calls the definition with the arguments of the context.
    [[nodiscard]] bool repeats(const std::vector<std::wstring>& parameters,
                               const CommandContext& context) const;

    std::wstring definitionKey() const override { return m_definitionKey; }
    /// The definition, or null if no add-in that is loaded has it.
    CommandDefinition* definition() const;

    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override;

protected:
    /// For `fillContext`: runs the definition in the global manager, once.
    void useGlobalCmdMgr(bool value) const { m_useGlobalCmdMgr = value; }
    /// For `fillContext`: runs the deferred tasks before the line answers, once.
    void flushDeferredTasks(bool value) const { m_flushDeferredTasks = value; }

    /// Adds the line's parameters to the context as arguments. An exception becomes the line's error, and
    /// nothing is run. The default adds nothing.
    virtual void fillContext(const Vs::TextCommandParameters& parameters, CommandContext& context);

private:
    std::wstring m_definitionKey;
    mutable CommandDefinition* m_definition = nullptr;
    mutable unsigned long m_generation = 0;
    mutable bool m_useGlobalCmdMgr = false;
    mutable bool m_flushDeferredTasks = false;
};

} // namespace Vu
