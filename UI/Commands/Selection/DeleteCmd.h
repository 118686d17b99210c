#pragma once

#include "Server/DataModel/Selection/Selection.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <vector>

namespace Vu::Commands {

class DeleteCmd;

/// Deletes what is selected, as far as it can be deleted.
class DeleteCmdDef : public CommandRowDefinition<DeleteCmdDef, DeleteCmd>
{
public:
    static const CommandRow kRow;

    /// An integer: whether copies of patterns go without the others. 0 by default.
    static const Vs::UniqueString* aloneArgumentName();

    DeleteCmdDef() = default;
    /// The same behaviour under another identity, which outlives the definition.
    explicit DeleteCmdDef(Info* identity) : CommandRowDefinition(identity) {}

protected:
    /// Something is selected that can be deleted.
    bool onIsApplicable(CommandContext* context) const override;
};

/// Where a person deletes some of the copies that were made as one pattern, it asks whether all of them are
/// meant; a line means all, unless its argument says otherwise.
class DeleteCmd : public Vs::Implements<DeleteCmd, SimpleCommand>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
    /// What was deleted before an error stays deleted.
    bool onAbortTransactionOnFailure(const Vs::Status&) const override { return false; }
    /// Deletes those that can be deleted, of which one may take others along, and selects nothing any more.
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
