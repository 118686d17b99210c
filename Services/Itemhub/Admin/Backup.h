#pragma once

#include "Services/Itemhub/Routes/Service.h"

#include <QStringList>

namespace Itemhub::Admin {

/// Copies everything into a folder, the database first: contents are only ever added, so everything it refers
/// to is there to be copied. Contents of an earlier backup in the same folder are kept and not copied again.
/// @param words the folder
void backup(Routes::Service& service, const QStringList& words);

} // namespace Itemhub::Admin
