#pragma once

#include "Server/Base/TextCommand.h"
#include "UI/Base/Validation/References.h"

#include <vector>

namespace Vu {

/// What a check found, and how far a number may lie from its reference.
struct CheckedValue
{
    std::wstring name; ///< As it stands in the file and in messages: "volume of Plate:1". In no language.
    ReferenceValue found;
    double relative = 0;    ///< Of the reference;
    double absolute = 0;    ///< the larger of the two counts.
    std::wstring unit = {}; ///< Behind numbers in messages: "mm³".
};

/// A check of a transcript: compares with the references of the kind "checks", or keeps what was found as the
/// reference (References::Mode). `name` selects the reference; two checks of one name share it. A failed
/// check answers 1 with one message that names the value, what was found and expected, the tolerance and the
/// file.
[[nodiscard]] Vs::TextCommandResult checkAgainstReference(const std::wstring& name,
                                                          const std::vector<CheckedValue>& values);

} // namespace Vu
