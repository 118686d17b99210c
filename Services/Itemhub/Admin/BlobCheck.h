#pragma once

#include "Services/Itemhub/Routes/Service.h"

#include <QStringList>

namespace Itemhub::Admin {

/// Reads all contents that versions refer to, and prints those that are missing or don't match their hash,
/// with their versions. @throws std::runtime_error if there are any
void checkBlobs(Routes::Service& service, const QStringList& words);

/// Removes unreferenced contents, which interrupted uploads leave behind; recent ones are kept, as they may
/// belong to an upload in progress.
void cleanBlobs(Routes::Service& service, const QStringList& words);

} // namespace Itemhub::Admin
