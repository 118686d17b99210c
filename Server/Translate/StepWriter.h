#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"
#include "Server/Translate/Reporter.h"
#include "Server/Translate/Writing.h"

namespace Vs::Translate {

/// Writes the model to a file. Throws Unreadable with the cause.
void writeStep(Kernel::XdeModel& model, const Writing& writing, const std::string& path, Reporter& reporter);

} // namespace Vs::Translate
