#pragma once

#include "UI/Base/Command/CommandTypes.h"

#include <memory>
#include <string>
#include <vector>

namespace Vs {
class Asset;
class SteppedTransaction;
class Transaction;
} // namespace Vs

namespace Vu {

class CommandBase;
class CommandInputBase;
class CommandInputSet;

/// The steps of one running command: their transactions, and the values that its inputs had after each. Made
/// with the command's inputs, or with its first step; destroyed at its end. Main thread only.
class CommandSteps
{
public:
    /// Null for a command that has none.
    static CommandSteps* find(const CommandBase* command);
    /// Made if it isn't there.
    static CommandSteps& of(CommandBase& command);
    /// Makes all steps of the command one step of its asset, or undoes them, and forgets them.
    static void end(const CommandBase* command, bool keep);
    /// Whether the inputs are being restored right now, which is not a new value for the command.
    static bool areInputsRestored(const CommandBase* command);

    explicit CommandSteps(CommandBase& command);
    ~CommandSteps();
    CommandSteps(const CommandSteps&) = delete;
    CommandSteps& operator=(const CommandSteps&) = delete;

    /// Whether any was begun, and the asset is changed in steps.
    bool isStepped() const { return m_whole != nullptr; }
    /// Whether the open step has changed the asset.
    bool isOpenOneChanged() const;
    /// An input has a new value for which no step was made: it stays when steps are undone.
    void inputSettled(const CommandInputBase* input);

    /// `asset` may be null: for a command that changes no asset. Throws std::runtime_error if that can't be
    /// changed. Returns false if the step can't be undone by itself, because it is part of a step of the
    /// command in which this one runs.
    [[nodiscard]] bool begin(Vs::Asset* asset);
    /// Ends the open step. One that is not undoable is the first that counts, from now on.
    void keep(bool undoable);
    void abandon();
    /// Undo or redo the nearest step and the inputs' values. There must be one.
    void undo();
    void redo();

private:
    using Values = std::vector<std::wstring>;

    Values inputValues() const;
    void restoreInputs();

    CommandBase& m_command;
    std::unique_ptr<Vs::SteppedTransaction> m_whole;
    Vs::Asset* m_partOf = nullptr; ///< Whose change in steps is another's, with so many before this command.
    size_t m_stepsBefore = 0;
    std::unique_ptr<Vs::Transaction> m_open;
    std::vector<Values> m_values; ///< Before the first step that counts, and after each.
    size_t m_done = 0;            ///< How many steps count and are done.
    bool m_restoring = false;
};

} // namespace Vu
