#pragma once

#include "Server/DataModel/Recovery/AutoSaveEvents.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Commands/CommandRow.h"

#include <string>

namespace Vu::Commands {

class NotifyAutoSaveFilesCmd;

/// Shows the files of crashed runs. A click on their notification runs it; the notification disappears with
/// the last of the files.
class NotifyAutoSaveFilesCmdDef
    : public CommandRowDefinition<NotifyAutoSaveFilesCmdDef, NotifyAutoSaveFilesCmd, CommandDefinition,
                                  Vs::NotificationsEventSite, Vs::AutoSaveEventSite>
{
public:
    static const CommandRow kRow;

    NotifyAutoSaveFilesCmdDef();

    /// The sender of the notification.
    static const std::wstring& notificationClientID();

    void onActivateNotification(Vs::ActivateNotificationEvent* event) override;
    void autoSavedRecoveryFileDeleted(Vs::AutoSaveEvent* event) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;

private:
    Vs::Subscriptions m_subscriptions;
};

class NotifyAutoSaveFilesCmd : public Vs::Implements<NotifyAutoSaveFilesCmd, SimpleCommand>
{
public:
    NotifyAutoSaveFilesCmd(NotifyAutoSaveFilesCmdDef* definition, CommandContext* context);

    /// Opens the dialog; installed by the library that has it. Without one, the files are listed as text.
    using Dialog = void (*)();
    static void dialog(Dialog dialog);

protected:
    ECommandType onCommandType() const override;
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
