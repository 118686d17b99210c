#pragma once

#include <string>
#include <vector>

namespace Vs {
class BodyDigests;
class Document;
} // namespace Vs

namespace Vs::Recovery {

/// The digests of a document's models (modelDigest), the visible ones first: recorded for a file when it is
/// written, and compared when it was opened. Main thread, or a forked child.
[[nodiscard]] std::vector<std::string> digestsOf(const Document& document);
[[nodiscard]] std::vector<std::string> digestsOf(const Document& document, BodyDigests& bodies);

} // namespace Vs::Recovery
