#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/Documents/AssetTypeList.h"

namespace Vu::Commands {

class InsertAssetCmd;

/// The list of asset types; choosing one adds an asset of it to the active document.
class InsertAssetCmdDef : public CommandRowDefinition<InsertAssetCmdDef, InsertAssetCmd, CommandDefinition,
                                                      IListControlHandler, Vs::AssetEventSite>
{
public:
    static const CommandRow kRow;

    InsertAssetCmdDef();

    /// "AssetType": the type, a Vs::AssetType.
    static const Vs::UniqueString* assetTypeArgumentName();
    /// "DocumentSession": the document to add to; without it, the active one.
    static const Vs::UniqueString* documentSessionArgumentName();
    /// "Uuid": the guid that the asset had when it was recorded.
    static const Vs::UniqueString* uuidArgumentName();
    /// "Hidden": 1 creates an asset that belongs to the document's active one and isn't shown by itself.
    static const Vs::UniqueString* hiddenArgumentName();

    void onListSelectionChanged(Info* item) override;
    void assetTypeRegistered(Vs::AssetTypeEvent* event) override;
    void assetTypeUnregistered(Vs::AssetTypeEvent* event) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    InputControl* onInputControl() override;

private:
    AssetTypeList m_types;
    Vs::Subscriptions m_subscriptions;
};

class InsertAssetCmd : public Vs::Implements<InsertAssetCmd, SimpleCommand>
{
public:
    InsertAssetCmd(InsertAssetCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
