#pragma once

#include "Server/Itemhub/ItemhubEvents.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"

#include <string>

namespace Vu::Commands {

class ItemhubNotifyMessageCmd;

/// Reports errors of the lifecycle service as notifications, and offers to retry failed uploads: a click on
/// their notification runs it. The notification disappears with the last of them.
class ItemhubNotifyMessageCmdDef
    : public CommandRowDefinition<ItemhubNotifyMessageCmdDef, ItemhubNotifyMessageCmd, CommandDefinition,
                                  Vs::NotificationsEventSite, Vs::ItemhubEventSite>
{
public:
    static const CommandRow kRow;

    ItemhubNotifyMessageCmdDef();

    /// The sender of the notification of failed uploads.
    static const std::wstring& notificationClientID();

    void onErrorMessage(Vs::ItemhubErrorEvent* event) override;
    void onRecoveryMessage(Vs::ItemhubEvent* event) override;
    void onRecoveryFileDeleted(Vs::ItemhubEvent* event) override;
    void onActivateNotification(Vs::ActivateNotificationEvent* event) override;

protected:
    bool onIsApplicable(CommandContext*) const override { return itemhubIsEnabled(); }

private:
    Vs::Subscriptions m_subscriptions;
};

class ItemhubNotifyMessageCmd : public Vs::Implements<ItemhubNotifyMessageCmd, SimpleCommand>
{
public:
    ItemhubNotifyMessageCmd(ItemhubNotifyMessageCmdDef* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
