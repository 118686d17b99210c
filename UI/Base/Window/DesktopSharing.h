#pragma once

#include "UI/Base/Program/Sharing.h"

#include <QString>

#include <functional>

namespace Vu::DesktopSharing {

/// Asks the desktop's services over the session bus and, if they don't answer, its xdg programs. Returns
/// before the outcome is known; `failed` is called on the main thread if nothing accepts the file.
void share(ShareWith with, const QString& path, const QString& title, std::function<void()> failed);

} // namespace Vu::DesktopSharing
