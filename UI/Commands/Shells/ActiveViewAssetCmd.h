#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Base/View/SplitViewEvents.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/OwnedList.h"

namespace Vs {
class AssetType;
}

namespace Vu::Commands {

class ActiveViewAssetCmd;

/// The list of the asset sessions of the active workspace, on the toolbar of the active view; it shows the
/// current one, and choosing another activates it.
class ActiveViewAssetCmdDef
    : public CommandRowDefinition<ActiveViewAssetCmdDef, ActiveViewAssetCmd, CommandDefinition,
                                  IListControlHandler, SplitViewEventSite, SessionEventSite>
{
public:
    static const CommandRow kRow;

    /// Creates the only definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();

    ActiveViewAssetCmdDef();

    /// "AssetSessionName": the guid of the session's asset, as text.
    static const Vs::UniqueString* assetSessionNameArgumentName();

    void onListSelectionChanged(Info* item) override;
    void splitViewActivate(SplitViewEvent*) override { refresh(); }
    void sessionPostActivateForAsset(SessionEvent*) override { refresh(); }
    void currentSessionChanged(SessionEvent*) override { refresh(); }
    void sessionClosed(SessionEvent* event) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    InputControl* onInputControl() override;

    /// Whether sessions on assets of that type are listed.
    virtual bool onValidateAssetType(Vs::AssetType* type) const;
    /// A session's name in the list.
    virtual std::wstring onAssetName(const AssetSession* session) const;
    virtual bool isSelectedListItem(const AssetSession* session);

private:
    void addToolbarItem();
    void refresh(const AssetSession* leaving = nullptr);
    void selectCurrent();

    OwnedList m_list;
    int m_making = 0; ///< The toolbar asks for the control again while it is being added.
    Vs::Subscriptions m_subscriptions;
};

class ActiveViewAssetCmd : public Vs::Implements<ActiveViewAssetCmd, SimpleCommand>
{
public:
    ActiveViewAssetCmd(ActiveViewAssetCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
