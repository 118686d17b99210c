#pragma once

#include <string>
#include <string_view>

namespace Vs::Translate {

/// A STEP file's text without the triangles and points that nobody reads of it: a long statement of an entity
/// that the kernel doesn't know keeps only its references, and a long list of points that only such
/// statements refer to is empty. The kernel walks along a list for each value that it appends, so filled
/// letters of an annotation alone, 20,000 triangles, would take it seconds, and ten times as many minutes.
/// Empty if there is nothing to leave out.
[[nodiscard]] std::string abridged(std::string_view file);

} // namespace Vs::Translate
