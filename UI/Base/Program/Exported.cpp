#include "UI/Base/Program/Exported.h"

#include "Server/Base/OS.h"
#include "Server/Base/PathInfo.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/Notifications.h"

#include <utility>

namespace Vu {

void tellExported(const std::wstring& path, size_t files)
{
    if (!Application::get()->mainWidget())
        return;
    const Vs::PathInfo::Path whole = Vs::PathInfo::absolute(path);
    const std::wstring folder = whole.parent_path().wstring();
    Vs::NotificationRequest request;
    request.title = files == 1 ? localizedFormat("Exported", "Exported \"%1%\"", whole.filename().wstring())
                               : localizedFormat("ExportedFiles", "Exported %1% files", files);
    request.file = files == 1 ? whole.wstring() : folder;
    request.clientID = L"Exported";
    request.actions.push_back({localized("ShowInFolder", "Show in folder"),
                               [folder] {
                                   if (!Vs::OS::platformShellOpen(folder))
                                       MessageBox::warning(localizedFormat(
                                           "FolderNotShown", "The folder \"%1%\" can't be shown.", folder));
                               },
                               false});
    Vs::NotificationCenter::get()->sendNotification(std::move(request));
}

} // namespace Vu
