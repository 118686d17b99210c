#pragma once

#include "Server/Base/Status.h"

#include <functional>
#include <string>

namespace Vs {
class Document;
class Request;
} // namespace Vs

namespace Vu::Design {

/// Whether the path is that of a file in the program's own document formats.
[[nodiscard]] bool isNativeFile(const std::wstring& path);

/// Copies the contents of a native file: its active asset's components, below `into` (Component::id) or, if
/// that is empty, at the top of the asset on which `execute` runs requests. An open document is used as it is
/// now; any other is opened temporarily. False with the reason.
[[nodiscard]] bool insertNativeFile(const std::wstring& path, const std::string& into,
                                    const std::function<bool(Vs::Request*)>& execute, Vs::Status& status);

} // namespace Vu::Design
