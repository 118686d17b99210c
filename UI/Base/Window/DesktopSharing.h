#pragma once

#include "UI/Base/Program/Sharing.h"

#include <QString>

#include <functional>

namespace Vu::DesktopSharing {

/// Asks the desktop's services by the session's bus, and where they don't answer, its xdg programs. Returns
/// before anything has come of it; `failed` is called on the main thread if nothing takes the file.
void share(ShareWith with, const QString& path, const QString& title, std::function<void()> failed);

} // namespace Vu::DesktopSharing
