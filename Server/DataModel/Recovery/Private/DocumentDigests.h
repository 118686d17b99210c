#pragma once

#include <string>
#include <vector>

namespace Vs {
class Document;
}

namespace Vs::Recovery {

/// The digests of a document's models (modelDigest), the visible ones first: what is told of a file when it
/// is written, and compared when it was opened. Main thread, or a forked child.
[[nodiscard]] std::vector<std::string> digestsOf(const Document& document);

} // namespace Vs::Recovery
