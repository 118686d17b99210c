#pragma once

#include "Server/DataModel/Recovery/AutoSaveEvents.h"
#include "UI/Base/Program/Notifications.h"

#include <map>
#include <string>

namespace Vu {

/// Notifies of documents that were closed with unsaved changes and without a question, and restores them, or
/// saves a copy, for whoever didn't mean it. The notification disappears with the recovery file.
class LeftDocuments : private Vs::AutoSaveEventSite, private Vs::NotificationsEventSite
{
public:
    LeftDocuments();

    /// The sender of these notifications.
    static const std::wstring& clientID();

private:
    void autoSavedDocumentLeft(Vs::AutoSaveEvent* event) override;
    void autoSavedRecoveryFileDeleted(Vs::AutoSaveEvent* event) override;
    void notificationRemoved(Vs::NotificationEvent* event) override { m_files.erase(event->notification()); }

    std::map<Vs::Notification*, std::wstring> m_files;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
