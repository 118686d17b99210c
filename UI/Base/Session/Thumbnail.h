#pragma once

#include <cstdint>
#include <string>

namespace Vs {
class Asset;
}

namespace Vu {

/// The bytes of a square PNG picture of the asset, `side` pixels wide, on a transparent ground: the whole
/// model, from where the user looks at it. Empty if the asset isn't open in a session, has nothing to show,
/// or if nothing can be drawn on this machine. Main thread only; takes as long as a picture takes to draw.
[[nodiscard]] std::string thumbnailOf(const Vs::Asset* asset, uint32_t side);

} // namespace Vu
