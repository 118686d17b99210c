#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"

namespace Vs::Translate {

/// Truncates names of thousands of characters, for formats whose readers fail on a text that long: STEP and
/// IGES.
void shortenNames(Kernel::XdeModel& model);

} // namespace Vs::Translate
