#include "UI/Base/Session/SavedNotice.h"

#include "UI/Base/Program/Notifications.h"

namespace Vu {

void SavedNotice::show(const std::wstring& title, const std::wstring& file)
{
    constexpr const wchar_t* kSender = L"Saved";
    auto* center = Vs::NotificationCenter::get();
    center->removeAboutFile(kSender, file);
    Vs::NotificationRequest request;
    request.title = title;
    request.file = file;
    request.clientID = kSender;
    center->sendNotification(std::move(request));
}

} // namespace Vu
