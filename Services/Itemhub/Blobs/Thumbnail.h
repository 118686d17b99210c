#pragma once

#include "Services/Itemhub/Blobs/Descriptor.h"

#include <cstdint>
#include <string>

namespace Itemhub::Blobs {

/// The picture that a document's package has of itself, as a PNG file; empty if the content is no package, or
/// has none. Reads no more than a few megabytes, whatever the content says of itself.
/// @param size of the content, in bytes
[[nodiscard]] std::string thumbnailOf(Descriptor content, int64_t size);

} // namespace Itemhub::Blobs
