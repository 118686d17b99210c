#pragma once

#include <cstddef>

namespace Rendra {

/// An offset into the bound buffer, in bytes, disguised as the pointer that GL's functions take for it.
inline const void* bufferOffset(size_t bytes)
{
    return reinterpret_cast<const void*>(bytes); // NOLINT(performance-no-int-to-ptr): GL never follows it.
}

} // namespace Rendra
