#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace Vs::Translate::Salvage {

/// One instance of a STEP file's data, as written there.
struct StepStatement
{
    uint32_t number;       ///< Of the instance, "#12".
    std::string_view text; ///< The text between "=" and ";": "LINE('',#3,#7)".
};

/// The instances of a file that may be damaged, in order: one that isn't terminated properly ends where the
/// next one begins. The texts are views into `bytes`. `lost` counts the pieces that aren't instances.
[[nodiscard]] std::vector<StepStatement> statementsOf(std::string_view bytes, size_t& lost);

/// A parameter of an instance.
struct StepValue
{
    enum class Kind : uint8_t { Omitted, Derived, Reference, Number, Word, Text, List, Typed };
    Kind kind = Kind::Omitted;
    bool isInteger = false;
    uint32_t reference = 0; ///< The number of the instance referred to.
    double number = 0;
    std::string_view text;        ///< As written, with its quotes or dots; for a typed one its name.
    std::vector<StepValue> items; ///< For a list and for a typed one.
};

/// An entity with its parameters; a complex instance has several of them.
struct StepRecord
{
    std::string_view name;
    std::vector<StepValue> values;
};

/// Parses a statement's text; false if it isn't well-formed. Not well-formed are references to 0, numbers
/// beyond 1e9, and nesting deeper than any sound file has.
[[nodiscard]] bool parse(std::string_view text, std::vector<StepRecord>& records);

} // namespace Vs::Translate::Salvage
