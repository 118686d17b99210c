#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"

namespace Vu::Commands {

class ItemhubNewItemCmd;

/// Creates an item in a workspace, with a first version. The number arguments are required; 0 means no linked
/// item, and the first workspace in which the account may write.
class ItemhubNewItemCmdDef
    : public ItemhubDefinition<ItemhubNewItemCmdDef, ItemhubNewItemCmd, Vs::DocumentEventSite>
{
public:
    static const CommandRow kRow;

    ItemhubNewItemCmdDef();
    explicit ItemhubNewItemCmdDef(Info* identity);

    /// "ItemhubWorkspaceId", a number.
    static const Vs::UniqueString* workspaceId();
    /// "ItemhubItemName"; without it a name is generated.
    static const Vs::UniqueString* itemName();
    /// "ItemhubSaveLabel": the label of a version.
    static const Vs::UniqueString* labelArgument();
    /// "ItemhubLinkedItemId" and "ItemhubLinkedItemWorkspaceId", numbers: what the new item links to.
    static const Vs::UniqueString* linkedItemId();
    static const Vs::UniqueString* linkedItemWorkspaceId();
    /// "ItemhubAssetType": the identifier of the asset type; by default a design.
    static const Vs::UniqueString* assetType();
    /// "ItemhubItemDescription".
    static const Vs::UniqueString* notes();

    /// The label of a first version.
    static const std::wstring& initialLabel();
};

class ItemhubNewItemCmd : public TimedCommand<ItemhubNewItemCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

/// A design with a generated name, in the first workspace unless the context names another one: the menu's
/// entry.
class ItemhubNewDesignCmdDef : public RowDefinition<ItemhubNewDesignCmdDef, ItemhubNewItemCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// A placeholder for documentations, which have no command yet.
class ItemhubNewDocumentationCmdDef
    : public RowDefinition<ItemhubNewDocumentationCmdDef, ItemhubNewItemCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext*) const override { return false; }
    CommandBase* onCreateCommand(CommandContext*) override { return nullptr; }
};

} // namespace Vu::Commands
