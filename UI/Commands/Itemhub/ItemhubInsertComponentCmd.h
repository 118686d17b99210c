#pragma once

#include "UI/Commands/Itemhub/ItemhubCommands.h"

namespace Vu::Commands {

class ItemhubInsertComponentCmd;

/// Inserts the design of an item into the active one, as a component.
class ItemhubInsertComponentCmdDef
    : public ItemhubDefinition<ItemhubInsertComponentCmdDef, ItemhubInsertComponentCmd>
{
public:
    static const CommandRow kRow;

    /// "ItemhubWorkspaceId" and "ItemhubItemId", numbers.
    static const Vs::UniqueString* workspaceId();
    static const Vs::UniqueString* itemId();
    /// "ItemhubDocType": the kind of document that the caller expects.
    static const Vs::UniqueString* docType();
};

/// Takes the item's first attachment if the argument says that a design is expected; without it, nothing is
/// inserted.
class ItemhubInsertComponentCmd : public TimedCommand<ItemhubInsertComponentCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

    [[nodiscard]] static bool isFileSupported(const std::wstring& docType);

protected:
    void onExecute(Vs::Status& status) override;

private:
    void insert();
    [[nodiscard]] std::wstring addressOfDesign() const;
};

} // namespace Vu::Commands
