#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace Vs::Translate::Salvage {

/// One instance of a STEP file's data, as it stands there.
struct StepStatement
{
    uint32_t number;       ///< Of the instance, "#12".
    std::string_view text; ///< What stands between "=" and ";": "LINE('',#3,#7)".
};

/// The instances of a file that may be damaged, in their order: what doesn't end as it should ends where the
/// next one begins. The texts are parts of `bytes`. `lost` counts the pieces that are no instances.
[[nodiscard]] std::vector<StepStatement> statementsOf(std::string_view bytes, size_t& lost);

/// A parameter of an instance.
struct StepValue
{
    enum class Kind : uint8_t { Omitted, Derived, Reference, Number, Word, Text, List, Typed };
    Kind kind = Kind::Omitted;
    bool isInteger = false;
    uint32_t reference = 0; ///< The number of the instance referred to.
    double number = 0;
    std::string_view text;        ///< As it stands, with its quotes or dots; of a typed one its name.
    std::vector<StepValue> items; ///< Of a list and of a typed one.
};

/// An entity with its parameters; an instance has several of them if it is a complex one.
struct StepRecord
{
    std::string_view name;
    std::vector<StepValue> values;
};

/// Takes a statement's text apart; false if it isn't whole. References to 0 and numbers beyond 1e9 aren't,
/// nor is what lies deeper than any sound file has it.
[[nodiscard]] bool parse(std::string_view text, std::vector<StepRecord>& records);

} // namespace Vs::Translate::Salvage
