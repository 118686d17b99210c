#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate::Salvage {

/// A parameter of an IGES file, as written there.
struct IgesValue
{
    enum class Kind : uint8_t { Omitted, Integer, Real, Text, Bad };
    Kind kind = Kind::Omitted;
    double number = 0;
    std::string_view text; ///< For a text with the count of its letters: "7HDefault".
};

/// What separates the parameters, and what ends them.
struct IgesDelimiters
{
    char parameter = ',', record = ';';
};

/// Splits a text into parameters, which are parts of it. `isEnded` tells whether it was terminated.
[[nodiscard]] std::vector<IgesValue> valuesOf(std::string_view text, IgesDelimiters delimiters,
                                              bool& isEnded);

/// An entity as the directory and its parameters describe it.
struct IgesRecord
{
    /// The fields of both lines, as numbers; nothing where none can be read.
    struct Directory
    {
        std::optional<int> type, structure, font, level, view, matrix, associated, weight, colour, form,
            subscript;
        std::string status; ///< Eight digits.
        std::string label;
    };
    uint32_t number = 0; ///< Of its first line in the directory, by which others refer to it.
    Directory directory;
    bool hasFirst = false, hasSecond = false; ///< Whether there are both lines.
    /// By at least two of the three places where it stands; 0 if they differ.
    int type = 0;
    std::vector<IgesValue> values; ///< Without the type.
    bool isWhole = false;          ///< The parameters begin and end as they should.
};

/// An IGES file that may be damaged, as far as its lines can be put in order. Lines that lack their section
/// belong to the section around them, and those that lack their number to the place between their neighbours.
struct IgesRecords
{
    explicit IgesRecords(std::string_view bytes);
    IgesRecords(const IgesRecords&) = delete;
    IgesRecords& operator=(const IgesRecords&) = delete;

    std::string global; ///< The text of the global section.
    IgesDelimiters delimiters;
    std::vector<IgesRecord> all; ///< By their numbers, which rise.
    /// Whether lines are missing, doubled, or without their section or number, or the end is missing.
    bool isInOrder = true;

private:
    std::deque<std::string> m_texts; ///< Of the values.
};

} // namespace Vs::Translate::Salvage
