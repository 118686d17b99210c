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

/// Values whose names begin so are not compared: they are told where others differ, as the reason. Their
/// texts are words with values behind them, parted by "; ", of which only those are told that differ:
/// "component Lid:1" is "place 0,0,5; colour #ff0000ff".
inline constexpr const wchar_t* kReasons[] = {L"component ", L"setting "};

/// A check of a transcript: compares with the references of the kind "checks", or keeps what was found as the
/// reference (References::Mode). `name` selects the reference; two checks of one name share it. A failed
/// check answers 1 with one message that names the value, what was found and expected, the tolerance and the
/// file; the next lines of it tell what else differs, up to ten in all.
[[nodiscard]] Vs::TextCommandResult checkAgainstReference(const std::wstring& name,
                                                          const std::vector<CheckedValue>& values);

/// The same with values that are known otherwise.
[[nodiscard]] Vs::TextCommandResult checkAgainstValues(const std::wstring& name,
                                                       const std::vector<CheckedValue>& values,
                                                       const ReferenceValues& reference);

/// Whether checks that pass also report what they found and what is expected. Default false.
void tellCheckedValues(bool tell);

} // namespace Vu
