#pragma once

#include "Services/Itemhub/Blobs/Descriptor.h"

#include <cstdint>
#include <string>

namespace Itemhub::Blobs {

/// The thumbnail in a document's package, as a PNG file; empty if the content isn't a package or has none.
/// Reads no more than a few megabytes, whatever the content claims.
/// @param size of the content, in bytes
[[nodiscard]] std::string thumbnailOf(Descriptor content, int64_t size);

} // namespace Itemhub::Blobs
