#pragma once

#include "Services/Itemhub/Routes/Service.h"

#include <QStringList>

namespace Itemhub::Admin {

/// Copies everything into a folder, the database first: contents only ever come, so whatever it refers to is
/// there to be copied. Of an earlier backup in the same folder, contents are kept and not copied again.
/// @param words the folder
void backup(Routes::Service& service, const QStringList& words);

} // namespace Itemhub::Admin
