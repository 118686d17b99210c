#pragma once

#include "Server/Base/Status.h"

namespace Vu::Design {

/// A new document with a small coloured assembly of primitives, shown. It counts as unchanged: it can be made
/// again at any time, so that nobody need be asked when it closes.
void makeSample(Vs::Status& status);

} // namespace Vu::Design
