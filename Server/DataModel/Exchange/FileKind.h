#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/Exchange/Format.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Vs::Exchange {

/// Determined from the beginning of a file; `size` is that of the whole file. Unknown if it is none of the
/// formats.
Format formatOfContent(std::string_view head, uint64_t size);

/// Examines the file and determines its format. A file that is missing, not a regular file, unreadable,
/// empty, of no known format, or of another format than its name says yields Unknown and an error that says
/// so.
Format recognise(const std::wstring& path, Status& status);

} // namespace Vs::Exchange
