#pragma once

#include "Server/DataModel/Selection/Selection.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <vector>

namespace Vu::Commands {

class DeleteCmd;

/// Deletes whatever of the selection can be deleted.
class DeleteCmdDef : public CommandRowDefinition<DeleteCmdDef, DeleteCmd>
{
public:
    static const CommandRow kRow;

    /// An integer: whether copies in patterns are deleted without the others. 0 by default.
    static const Vs::UniqueString* aloneArgumentName();

    DeleteCmdDef() = default;
    /// The same behaviour under another identity, which outlives the definition.
    explicit DeleteCmdDef(Info* identity) : CommandRowDefinition(identity) {}

protected:
    /// Whether something deletable is selected.
    bool onIsApplicable(CommandContext* context) const override;
};

/// When a user deletes some of the copies of a pattern, it asks whether all of them are meant; a line means
/// all, unless its argument says otherwise.
class DeleteCmd : public Vs::Implements<DeleteCmd, SimpleCommand>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
    /// What was deleted before an error stays deleted.
    bool onAbortTransactionOnFailure(const Vs::Status&) const override { return false; }
    /// Deletes those that can be deleted, some of which may be removed along with others, and clears the
    /// selection.
    void deleteSelections(std::vector<Vs::StrongRef<Vs::LogicalSelection>>& selections, Vs::Status& status);

private:
    using Selections = std::vector<Vs::StrongRef<Vs::LogicalSelection>>;

    enum class Copies { All, Alone, None };
    Copies copiesMeant(const Selections& selections, Vs::Asset& asset) const;
    void deleteEach(const Selections& selections, Vs::Asset& asset, Vs::Status& status);
    void deleteTogether(Selections selections, Vs::Asset& asset, Vs::Status& status);
    void run(Vs::Request* request, Vs::Status& status);
};

} // namespace Vu::Commands
