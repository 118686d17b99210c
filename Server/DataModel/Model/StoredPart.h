#pragma once

#include "Server/DataModel/Model/FileMapping.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace Vs {

/// A range of a file that holds a model file.
struct StoredPart
{
    std::shared_ptr<const FileMapping> file;
    uint64_t place = 0;
    uint64_t size = 0;
    uint64_t hash = 0;           ///< ModelFile::hash.
    std::optional<uint32_t> crc; ///< The bytes' CRC-32, if it is known.
};

} // namespace Vs
