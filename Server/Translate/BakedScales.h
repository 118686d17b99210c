#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"

namespace Vs::Translate {

/// Makes all places of a model rigid motions, since the kernel's writers of exact formats know no others: a
/// part that is placed at a scale or mirrored becomes a part of that size. Does nothing where none is. Throws
/// Unreadable for parts of triangles, which such formats don't hold.
void bakeScales(Kernel::XdeModel& model);

} // namespace Vs::Translate
