#pragma once

#include <string>

namespace Vs {

/// The text of a recorded transcript without the identifiers of documents and assets that no other line has:
/// each run makes other ones, so that two recordings of the same would differ by nothing else.
[[nodiscard]] std::string withoutUnnamedIdentifiers(const std::string& transcript);

} // namespace Vs
