#pragma once

#include "Server/Base/Object.h"

namespace Vu {

/// Something that shows an asset.
class View : public Vs::Implements<View>
{
};

} // namespace Vu
