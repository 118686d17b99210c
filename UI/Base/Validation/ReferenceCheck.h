#pragma once

#include "Server/Base/TextCommand.h"
#include "UI/Base/Validation/References.h"

#include <vector>

namespace Vu {

/// The result of a check, and how far a number may deviate from its reference.
struct CheckedValue
{
    std::wstring name; ///< As written in the file and in messages: "volume of Plate:1". Not translated.
    ReferenceValue found;
    double relative = 0;    ///< Of the reference;
    double absolute = 0;    ///< The larger of the two counts.
    std::wstring unit = {}; ///< After numbers in messages: "mm³".
};

/// Values whose names begin like this are not compared: they are reported as the reason if others differ.
/// Their texts are names with values after them, separated by "; ", of which only the differing ones are
/// reported: "component Lid:1" is "place 0,0,5; colour #ff0000ff".
inline constexpr const wchar_t* kReasons[] = {L"component ", L"setting "};

/// A check of a transcript: compares with the references of the kind "checks", or stores the result as the
/// reference (References::Mode). `name` selects the reference; two checks with the same name share it. A
/// failed check answers 1 with one message that names the value, the actual and expected result, the
/// tolerance and the file; its following lines list other differences, up to ten in all.
[[nodiscard]] Vs::TextCommandResult checkAgainstReference(const std::wstring& name,
                                                          const std::vector<CheckedValue>& values);

/// The same with values obtained elsewhere.
[[nodiscard]] Vs::TextCommandResult checkAgainstValues(const std::wstring& name,
                                                       const std::vector<CheckedValue>& values,
                                                       const ReferenceValues& reference);

/// Whether checks that pass also report their results and expectations. Default false.
void tellCheckedValues(bool tell);

} // namespace Vu
