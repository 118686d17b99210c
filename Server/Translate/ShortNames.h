#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"

namespace Vs::Translate {

/// Cuts off names of thousands of characters, for formats whose readers give up at a text that long: STEP and
/// IGES.
void shortenNames(Kernel::XdeModel& model);

} // namespace Vs::Translate
