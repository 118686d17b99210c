#pragma once

#include "UI/Base/Validation/ReferenceCheck.h"

#include <string>
#include <vector>

namespace Vu::Design {

/// Compares the result of a check with what its line says, instead of a reference: "6000 mm^3 +- 0.1 %", or
/// as many values as there are, separated by commas. Numbers are expressions with units, by default those of
/// the results; the tolerance is one of these or a percentage, by default that of the check. Throws
/// Vs::Exception if the text can't be parsed.
[[nodiscard]] Vs::TextCommandResult checkExpected(const std::wstring& name, std::vector<CheckedValue> values,
                                                  const std::wstring& text);

} // namespace Vu::Design
