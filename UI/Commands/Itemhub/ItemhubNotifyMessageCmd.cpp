#include "UI/Commands/Itemhub/ItemhubNotifyMessageCmd.h"

#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Commands/Localized.h"

#include <vector>

namespace Vu::Commands {

using Files = std::vector<Vs::UploadQueuedFileInfo>;
using Vs::ItemhubUtilities;

// clang-format off
constinit const CommandRow ItemhubNotifyMessageCmdDef::kRow = {
    .key = L"ItemhubNotifyMessageCommand", .title = "Itemhub Notification",
    .groups = {&CommandGroup::BaseGroup}, .scriptable = false};
// clang-format on

namespace {

constexpr int kOffer = 3;
constexpr int kNotificationAccessPoint = 6;

Files failedUploads()
{
    Files files;
    ItemhubUtilities::get()->getAllRecoverFiles(files);
    return files;
}

std::wstring namesOf(const Files& files)
{
    std::wstring names;
    for (const Vs::UploadQueuedFileInfo& file : files)
        names += (names.empty() ? L"" : L", ") + file.fileName();
    return names;
}

} // namespace

ItemhubNotifyMessageCmdDef::ItemhubNotifyMessageCmdDef()
{
    m_subscriptions.add(Vs::NotificationsEventSource::get(), this);
    m_subscriptions.add(Vs::ItemhubEventSource::get(), this);
}

const std::wstring& ItemhubNotifyMessageCmdDef::notificationClientID()
{
    static const std::wstring identifier = L"ItemhubNotifyRecovery";
    return identifier;
}

void ItemhubNotifyMessageCmdDef::onErrorMessage(Vs::ItemhubErrorEvent* event)
{
    ItemhubUtilities::get()->notifyItemhubErrorMessage(event->getErrorMessage());
}

void ItemhubNotifyMessageCmdDef::onRecoveryMessage(Vs::ItemhubEvent*)
{
    const Files files = failedUploads();
    if (files.empty())
        return;
    Vs::NotificationCenter::get()->sendNotification(
        localized("ItemhubRecovery", "Itemhub Recovery Message"), namesOf(files),
        localized("ItemhubRecoveryClick", "Click here to view recovery message."), {}, notificationClientID(),
        Vs::NotificationType::makeByType(kOffer), nullptr);
}

void ItemhubNotifyMessageCmdDef::onRecoveryFileDeleted(Vs::ItemhubEvent*)
{
    if (!failedUploads().empty())
        return;
    std::vector<Vs::Notification*> own;
    Vs::NotificationCenter::get()->notificationsByClientID(notificationClientID(), own);
    if (own.size() == 1)
        Vs::NotificationCenter::get()->remove(own.front());
}

void ItemhubNotifyMessageCmdDef::onActivateNotification(Vs::ActivateNotificationEvent* event)
{
    const Vs::Notification* notification = event->notification();
    if (!Vs::NotificationCenter::get()->exists(notification))
        return;
    const std::wstring& sender = notification->contextInfo()->clientID();
    if (sender == ItemhubUtilities::notificationClientID()) {
        MessageBox::error(localizedFormat("ItemhubHandledError", "Handled Itemhub error message (%1%)",
                                          notification->subTitle()));
    } else if (sender == notificationClientID()) {
        CommandContext context = CommandContext::activeContext();
        context.accessPoint(kNotificationAccessPoint);
        static_cast<void>(executeCommand(context));
        // It stays as long as there is a file.
        event->handled(false);
    }
}

ItemhubNotifyMessageCmd::ItemhubNotifyMessageCmd(ItemhubNotifyMessageCmdDef* definition,
                                                 CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void ItemhubNotifyMessageCmd::onExecute(Vs::Status& status)
{
    const Files files = failedUploads();
    if (files.empty())
        return;
    // No answer doesn't mean giving up an upload.
    if (!MessageBox::canAsk()) {
        status.addError(localizedFormat("ItemhubFailedUploads",
                                        "Uploads have failed, and nobody is there to ask what to do: %1%",
                                        namesOf(files)));
        return;
    }
    MessageBox box(localizedFormat("ItemhubUploadAgain",
                                   "There are following queued files need to be uploaded because of failed "
                                   "uploading before \n(%1%) \nDo you want to upload them again?",
                                   namesOf(files)));
    box.icon(kQuestionIcon);
    box.addButton(localized("UploadQueuedFile", "Yes"), true);
    box.addButton(kCancelButton);
    constexpr int kUpload = 0;
    const bool again = box.show() == kUpload;
    ItemhubUtilities* service = ItemhubUtilities::get();
    for (const Vs::UploadQueuedFileInfo& file : files) {
        const bool begun = again && service->recoverQueuedBackgroundUpload(file.uploadQueuedFile());
        service->deleteARecoveryFile(file.uploadQueuedFile(), !begun);
    }
}

} // namespace Vu::Commands
