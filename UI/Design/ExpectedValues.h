#pragma once

#include "UI/Base/Validation/ReferenceCheck.h"

#include <string>
#include <vector>

namespace Vu::Design {

/// Compares what a check has found with what its line says, instead of a reference: "6000 mm^3 +- 0.1 %", or
/// as many values as there are, parted by commas. Numbers are expressions with units, without one in those in
/// which the values are found; the tolerance is one of these or per cent, and without it that of the check.
/// Throws Vs::Exception where the text can't be read.
[[nodiscard]] Vs::TextCommandResult checkExpected(const std::wstring& name, std::vector<CheckedValue> values,
                                                  const std::wstring& text);

} // namespace Vu::Design
