#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"

namespace Vs::Translate {

/// Writes the model to a file. Throws Unreadable with the cause.
void writeBrep(Kernel::XdeModel& model, const std::string& path);

} // namespace Vs::Translate
