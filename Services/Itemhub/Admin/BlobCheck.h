#pragma once

#include "Services/Itemhub/Routes/Service.h"

#include <QStringList>

namespace Itemhub::Admin {

/// Reads all contents that versions refer to, and prints those that are missing or no longer what their hash
/// says, with their versions. @throws std::runtime_error if there are such
void checkBlobs(Routes::Service& service, const QStringList& words);

/// Removes contents that nothing refers to, as an interrupted upload leaves them; younger ones may be an
/// upload's under way.
void cleanBlobs(Routes::Service& service, const QStringList& words);

} // namespace Itemhub::Admin
