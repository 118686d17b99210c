#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/Exchange/Format.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Vs::Exchange {

/// By the beginning of a file; `size` is that of the whole file. Unknown if it has none of the formats.
Format formatOfContent(std::string_view head, uint64_t size);

/// Looks at the file and finds its format. A file that is missing, not a regular file, unreadable, empty, of
/// no known format, or of a different one than its name says gives Unknown and an error that says so.
Format recognise(const std::wstring& path, Status& status);

} // namespace Vs::Exchange
