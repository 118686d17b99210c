#include "UI/Commands/AutoSave/NotifyAutoSaveFilesCmd.h"

#include "Server/DataModel/Recovery/AutoSaveOptionsGroup.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Program/Application.h"
#include "UI/Commands/AutoSave/RecoveryFiles.h"

#include <tuple>
#include <vector>

namespace Vu::Commands {

// clang-format off
const CommandRow NotifyAutoSaveFilesCmdDef::kRow = {
    .key = L"NotifyAutoSaveFilesCommand", .title = "AutoSave Notification",
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

constexpr int kDialogAccessPoint = 6;

NotifyAutoSaveFilesCmd::Dialog s_dialog = nullptr;

} // namespace

NotifyAutoSaveFilesCmdDef::NotifyAutoSaveFilesCmdDef()
{
    m_subscriptions.add(Vs::NotificationsEventSource::get(), this);
    m_subscriptions.add(Vs::AutoSaveEventSource::get(), this);
}

const std::wstring& NotifyAutoSaveFilesCmdDef::notificationClientID()
{
    static const std::wstring identifier = L"AutoSaveNotification";
    return identifier;
}

bool NotifyAutoSaveFilesCmdDef::onIsApplicable(CommandContext*) const
{
    return Vs::AutoSaveOptionsGroup::get()->performAutoSave();
}

void NotifyAutoSaveFilesCmdDef::onActivateNotification(Vs::ActivateNotificationEvent* event)
{
    const Vs::Notification* notification = event->notification();
    if (!Vs::NotificationCenter::get()->exists(notification) ||
        notification->contextInfo()->clientID() != notificationClientID())
        return;
    CommandContext context = CommandContext::activeContext();
    std::ignore = executeCommand(context);
    // It stays as long as there is a file.
    event->handled(false);
}

void NotifyAutoSaveFilesCmdDef::autoSavedRecoveryFileDeleted(Vs::AutoSaveEvent*)
{
    if (!RecoveryFiles::all().empty())
        return;
    std::vector<Vs::Notification*> own;
    Vs::NotificationCenter::get()->notificationsByClientID(notificationClientID(), own);
    if (own.size() == 1)
        Vs::NotificationCenter::get()->remove(own.front());
}

NotifyAutoSaveFilesCmd::NotifyAutoSaveFilesCmd(NotifyAutoSaveFilesCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
}

ECommandType NotifyAutoSaveFilesCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void NotifyAutoSaveFilesCmd::dialog(Dialog dialog)
{
    s_dialog = dialog;
}

void NotifyAutoSaveFilesCmd::onExecute(Vs::Status&)
{
    commandContext()->accessPoint(kDialogAccessPoint);
    if (s_dialog && Application::get()->mainWidget()) {
        s_dialog();
        return;
    }
    for (const Vs::AutoSavedFileInfo& file : RecoveryFiles::offered())
        Application::get()->inform(RecoveryFiles::rowOf(file));
}

} // namespace Vu::Commands
