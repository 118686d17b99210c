#include "UI/Base/Session/Private/AutoSaveMessages.h"

#include "Server/Base/TextCommandMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Notifications.h"

#include <tuple>

namespace Vu {
namespace {

constexpr const wchar_t* kClientID = L"RecoveryFiles";

void send(Vs::NotificationType::Kind kind, const std::wstring& clientID, std::wstring title,
          std::wstring text)
{
    Vs::NotificationRequest request;
    request.title = std::move(title);
    request.text = std::move(text);
    request.clientID = clientID;
    request.type = Vs::NotificationType::makeByType(kind);
    Vs::NotificationCenter::get()->sendNotification(std::move(request));
}

void warn(const Vs::AutoSaveEvent& event)
{
    send(Vs::NotificationType::Warning, kClientID, localized("RecoveryFilesTitle", "File Recovery"),
         event.message());
}

} // namespace

AutoSaveMessages::AutoSaveMessages()
{
    m_subscriptions.add(Vs::AutoSaveEventSource::get(), this);
}

const std::wstring& AutoSaveMessages::failureClientID()
{
    static const std::wstring identifier = L"AutoSaveFailure";
    return identifier;
}

void AutoSaveMessages::autoSavedRecoveryFilesFound(Vs::AutoSaveEvent*)
{
    if (!Application::headless() && !Application::testing())
        std::ignore =
            Vs::TextCommandMgr::get()->executeCommandWithoutOutput(L"AutoSave.NotifyAutoSavedFiles");
}

void AutoSaveMessages::autoSavedRecoveryFileKept(Vs::AutoSaveEvent* event)
{
    warn(*event);
}

void AutoSaveMessages::autoSavedRecoveryFileDamaged(Vs::AutoSaveEvent* event)
{
    warn(*event);
}

void AutoSaveMessages::autoSaveFailed(Vs::AutoSaveEvent* event)
{
    Vs::NotificationCenter::get()->removeByClientID(failureClientID());
    send(Vs::NotificationType::Error, failureClientID(), localized("AutoSaveTitle", "Auto-save"),
         event->message());
}

void AutoSaveMessages::autoSaveWorksAgain(Vs::AutoSaveEvent*)
{
    Vs::NotificationCenter::get()->removeByClientID(failureClientID());
}

} // namespace Vu
