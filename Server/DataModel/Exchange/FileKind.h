#pragma once

#include "Server/Base/Status.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Vs::Exchange {

enum class Format { Unknown, Step, Iges, Brep, Stl };

/// By the suffix, in any case.
Format formatOfName(const std::wstring& path);

/// By what a file begins with; `size` is that of the whole file. Unknown if it is none of the formats.
Format formatOfContent(std::string_view head, uint64_t size);

/// As a person calls it: L"STEP".
const wchar_t* nameOf(Format format);
/// As the worker takes it: "step".
const char* keyOf(Format format);
Format formatOfKey(std::string_view key);

/// Looks at the file and finds its format. A file that is missing, no file, unreadable, empty, of no known
/// format, or of another one than its name says gives Unknown and an error that says so.
Format recognise(const std::wstring& path, Status& status);

} // namespace Vs::Exchange
