#pragma once

#include <cstdint>

namespace Vs {

class Asset;

/// A number that tells the asset's model from any other that a user could tell from it: the tree with names,
/// places, colours and visibility; the bodies with their meshes; the settings. Places count to a millionth of
/// a millimetre. The asset's own name doesn't count, nor how the model came to be: after a save and a
/// reopening, or after a step was undone and done again, it is the same number. Makes the meshes that aren't
/// there yet. Main thread.
[[nodiscard]] uint64_t modelDigest(const Asset& asset);

} // namespace Vs
