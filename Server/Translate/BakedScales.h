#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"

namespace Vs::Translate {

/// Makes all placements of a model rigid motions, since the kernel's writers of exact formats support no
/// others: a part placed with a scale or mirrored becomes a part of that size. Does nothing if there is none.
/// Throws Unreadable for parts made of triangles, which such formats can't hold.
void bakeScales(Kernel::XdeModel& model);

} // namespace Vs::Translate
