#pragma once

#include <string>

namespace Vs {
class Document;
}

namespace Vu::Commands {

/// The name, without a folder, that a dialog proposes for a file made from the document. `suffix` begins with
/// its dot.
[[nodiscard]] std::wstring fileNameFor(const Vs::Document* document, const std::wstring& suffix);

} // namespace Vu::Commands
