#include "Server/Translate/Salvage/IgesRecords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <map>

namespace Vs::Translate::Salvage {

namespace {

constexpr size_t kField = 8, kColumns = 72, kLine = 80, kTextColumns = 64;
constexpr std::string_view kSections = "SGDPT";

struct Line
{
    std::string_view data; ///< The columns before the section.
    char section = ' ';
    std::optional<uint32_t> number;
};

using Lines = std::map<uint32_t, std::string_view>; ///< By their numbers in the section.

std::string_view trimmed(std::string_view text)
{
    const size_t begin = text.find_first_not_of(" \t\r\0");
    return begin == text.npos ? std::string_view()
                              : text.substr(begin, text.find_last_not_of(" \t\r\0") + 1 - begin);
}

/// A blank field is 0.
std::optional<int> integerIn(std::string_view field)
{
    field = trimmed(field);
    if (field.empty())
        return 0;
    field.remove_prefix(field.front() == '+');
    int number = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
    if (error != std::errc() || end != field.data() + field.size())
        return std::nullopt;
    return number;
}

bool isSection(char c)
{
    return kSections.find(c) != kSections.npos;
}

Line lineOf(std::string_view text)
{
    while (!text.empty() && (text.back() == '\r' || text.back() == ' '))
        text.remove_suffix(1);
    Line line;
    if (text.size() <= kColumns)
        return line;
    // Text that isn't plain ASCII shifts the columns.
    const size_t tail = text.size() <= kLine ? kColumns : text.size() - kField;
    line.data = text.substr(0, tail);
    line.section = text[tail];
    if (const auto number = integerIn(text.substr(tail + 1)); number && *number > 0)
        line.number = static_cast<uint32_t>(*number);
    return line;
}

/// What a lost end of a line joined is divided again.
void addLines(std::string_view text, std::vector<Line>& lines)
{
    while (text.size() > kLine + kColumns && isSection(text[kColumns])) {
        size_t gap = 0;
        while (gap < 2 && text.size() > kLine + gap + kColumns && !isSection(text[kLine + gap + kColumns]))
            ++gap;
        if (text.size() <= kLine + gap + kColumns || !isSection(text[kLine + gap + kColumns]))
            break;
        lines.push_back(lineOf(text.substr(0, kLine)));
        text.remove_prefix(kLine + gap);
    }
    lines.push_back(lineOf(text));
}

/// Gives each line the section with which the fewest letters are wrong, as sections follow each other.
/// Returns how many are wrong.
size_t settleSections(std::vector<Line>& lines)
{
    constexpr size_t kCount = kSections.size();
    using Costs = std::array<uint32_t, kCount>;
    std::vector<std::array<uint8_t, kCount>> before(lines.size());
    Costs costs{};
    for (size_t i = 0; i < lines.size(); ++i) {
        Costs next{};
        for (size_t section = 0; section < kCount; ++section) {
            const auto least = std::min_element(costs.begin(), costs.begin() + long(section) + 1);
            before[i][section] = uint8_t(least - costs.begin());
            next[section] = *least + (lines[i].section != kSections[section]);
        }
        costs = next;
    }
    const auto least = std::min_element(costs.begin(), costs.end());
    size_t section = size_t(least - costs.begin());
    for (size_t i = lines.size(); i-- > 0;) {
        lines[i].section = kSections[section];
        section = before[i][section];
    }
    return *least;
}

/// The lines of one section, each at its place. A number that doesn't follow its predecessor counts only if
/// the next one follows it.
Lines inOrder(const std::vector<Line>& lines, char section, bool& isInOrder)
{
    Lines placed;
    uint32_t last = 0;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].section != section)
            continue;
        uint32_t number = last + 1;
        if (lines[i].number != number) {
            isInOrder = false;
            const bool isConfirmed = lines[i].number && i + 1 < lines.size() &&
                                     lines[i + 1].section == section &&
                                     lines[i + 1].number == *lines[i].number + 1;
            if (isConfirmed)
                number = *lines[i].number;
        }
        isInOrder &= placed.try_emplace(number, lines[i].data).second;
        last = number;
    }
    return placed;
}

void readReal(std::string_view text, IgesValue& value)
{
    std::string number(text.substr(text.front() == '+'));
    for (char& c : number)
        if (c == 'D' || c == 'd')
            c = 'E';
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value.number);
    const bool isNumber =
        error == std::errc() && end == number.data() + number.size() && std::isfinite(value.number);
    const bool isInteger = text.find_first_of(".EeDd") == text.npos;
    value.kind = !isNumber   ? IgesValue::Kind::Bad
                 : isInteger ? IgesValue::Kind::Integer
                             : IgesValue::Kind::Real;
}

/// The length of a text with its count of letters; 0 if there is none here.
size_t lengthOfText(std::string_view text)
{
    size_t letters = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), letters);
    if (error != std::errc() || end == text.data() + text.size() || *end != 'H')
        return 0;
    const size_t head = size_t(end - text.data()) + 1;
    return letters <= text.size() - head ? head + letters : 0;
}

/// Where an entity's parameters are, as lines of their section.
struct Place
{
    uint32_t begin = 0, count = 0;
    bool operator==(const Place&) const = default;
};

/// Joined from lines that need not all exist.
std::string joined(const Lines& lines, const Place& place)
{
    std::string text;
    for (auto line = lines.lower_bound(place.begin);
         line != lines.end() && line->first < place.begin + place.count; ++line) {
        text += line->second.substr(0, kTextColumns);
        text.resize((text.size() + kTextColumns - 1) / kTextColumns * kTextColumns, ' ');
    }
    return text;
}

std::string_view field(std::string_view line, size_t number)
{
    return line.size() > number * kField ? line.substr(number * kField, kField) : std::string_view();
}

/// The parameters of an entity at one place where they may be.
struct Parameters
{
    int type = 0;
    std::vector<IgesValue> values;
    bool isWhole = false;
};

Parameters parametersAt(const Lines& lines, const Place& place, IgesDelimiters delimiters,
                        std::deque<std::string>& texts)
{
    Parameters found;
    constexpr uint32_t kMostLines = 10'000'000;
    if (place.begin == 0 || place.count == 0 || place.count > kMostLines)
        return found;
    found.values = valuesOf(texts.emplace_back(joined(lines, place)), delimiters, found.isWhole);
    if (found.values.empty() || found.values[0].kind != IgesValue::Kind::Integer) {
        found = {};
        return found;
    }
    found.type = int(std::clamp(found.values[0].number, 0.0, 1e6));
    found.values.erase(found.values.begin());
    return found;
}

/// Where lines say themselves to which entity they belong. Those of an entity stand together; of others,
/// which a wrong number put there, the neighbours say more.
std::map<uint32_t, Place> placesByOwners(const Lines& parameters)
{
    std::map<uint32_t, Place> places;
    for (const auto& [number, line] : parameters) {
        const auto owner = integerIn(field(line, kTextColumns / kField));
        if (!owner || *owner <= 0)
            continue;
        Place& place = places[uint32_t(*owner)];
        if (place.count == 0)
            place = {number, 1};
        else if (number - place.begin == place.count)
            ++place.count;
    }
    return places;
}

void readDirectory(const Lines& lines, IgesRecord& record, Place& place, std::optional<int>& otherType)
{
    IgesRecord::Directory& entry = record.directory;
    if (const auto line = lines.find(record.number); line != lines.end()) {
        record.hasFirst = true;
        const auto number = [&](size_t at) { return integerIn(field(line->second, at)); };
        entry.type = number(0);
        place.begin = uint32_t(std::max(0, number(1).value_or(0)));
        entry.structure = number(2);
        entry.font = number(3);
        entry.level = number(4);
        entry.view = number(5);
        entry.matrix = number(6);
        entry.associated = number(7);
        entry.status = field(line->second, 8);
    }
    if (const auto line = lines.find(record.number + 1); line != lines.end()) {
        record.hasSecond = true;
        const auto number = [&](size_t at) { return integerIn(field(line->second, at)); };
        otherType = number(0);
        entry.weight = number(1);
        entry.colour = number(2);
        place.count = uint32_t(std::max(0, number(3).value_or(0)));
        entry.form = number(4);
        entry.label = field(line->second, 7);
        entry.subscript = number(8);
    }
}

/// What two of three agree on.
int majority(int a, int b, int c)
{
    return a == b || a == c ? a : b == c ? b : 0;
}

IgesDelimiters delimitersOf(std::string_view global)
{
    IgesDelimiters delimiters;
    const auto isFit = [](char c) {
        return c > ' ' && c < 127 && std::string_view("0123456789+-.DEH").find(c) == std::string_view::npos;
    };
    if (global.size() > 3 && global.starts_with("1H") && isFit(global[2]) && global[3] == global[2]) {
        delimiters.parameter = global[2];
        global.remove_prefix(4);
    } else if (!global.empty() && global[0] == ',') {
        global.remove_prefix(1);
    }
    if (global.size() > 3 && global.starts_with("1H") && isFit(global[2]) &&
        global[3] == delimiters.parameter)
        delimiters.record = global[2];
    return delimiters;
}

/// The two sections that describe entities.
class Sections
{
public:
    Sections(const std::vector<Line>& lines, IgesDelimiters delimiters, std::deque<std::string>& texts)
        : m_delimiters(delimiters),
          m_texts(texts),
          m_directory(inOrder(lines, 'D', m_isInOrder)),
          m_parameters(inOrder(lines, 'P', m_isInOrder))
    {
    }

    std::vector<IgesRecord> records();
    bool isInOrder() const { return m_isInOrder; }

private:
    IgesRecord recordOf(uint32_t number, const Place& byOwner);

    IgesDelimiters m_delimiters;
    std::deque<std::string>& m_texts;
    bool m_isInOrder = true;
    Lines m_directory, m_parameters;
};

std::vector<IgesRecord> Sections::records()
{
    std::map<uint32_t, Place> byOwners = placesByOwners(m_parameters);
    for (const auto& [number, line] : m_directory)
        byOwners.try_emplace(number - (number % 2 == 0));
    std::vector<IgesRecord> all;
    for (const auto& [number, byOwner] : byOwners) {
        IgesRecord record = recordOf(number, byOwner);
        // What only a wrong number made.
        if (record.hasFirst || record.hasSecond || (number % 2 == 1 && record.isWhole))
            all.push_back(std::move(record));
    }
    return all;
}

/// What the lines of parameters say of their owner counts more than the directory, which says it only once.
IgesRecord Sections::recordOf(uint32_t number, const Place& byOwner)
{
    IgesRecord record;
    record.number = number;
    Place place;
    std::optional<int> otherType;
    readDirectory(m_directory, record, place, otherType);
    const std::optional<int> type = record.directory.type;
    const auto isIts = [&](const Parameters& each) {
        return each.isWhole && (each.type == type || each.type == otherType);
    };
    Parameters found = parametersAt(m_parameters, byOwner, m_delimiters, m_texts);
    if (place != byOwner) {
        m_isInOrder = false;
        if (Parameters told = parametersAt(m_parameters, place, m_delimiters, m_texts);
            !isIts(found) && (isIts(told) || found.type == 0))
            found = std::move(told);
    }
    record.type = majority(type.value_or(-1), otherType.value_or(-2), found.type);
    if (!record.hasFirst && !record.hasSecond)
        record.type = found.type;
    m_isInOrder &= type == record.type && otherType == record.type && found.type == record.type;
    record.values = std::move(found.values);
    record.isWhole = found.isWhole;
    return record;
}

} // namespace

std::vector<IgesValue> valuesOf(std::string_view text, IgesDelimiters delimiters, bool& isEnded)
{
    std::vector<IgesValue> values;
    isEnded = false;
    while (!isEnded && !text.empty()) {
        const size_t begin = std::min(text.find_first_not_of(' '), text.size());
        text.remove_prefix(begin);
        const char ends[] = {delimiters.parameter, delimiters.record};
        const size_t letters = lengthOfText(text);
        const size_t end = std::min(text.find_first_of(std::string_view(ends, 2), letters), text.size());
        IgesValue value;
        value.text = letters > 0 ? text.substr(0, letters) : trimmed(text.substr(0, end));
        if (letters > 0)
            value.kind = trimmed(text.substr(letters, end - letters)).empty() ? IgesValue::Kind::Text
                                                                              : IgesValue::Kind::Bad;
        else if (!value.text.empty())
            readReal(value.text, value);
        isEnded = end < text.size() && text[end] == delimiters.record;
        const bool isBeyond = end == text.size();
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!isBeyond || !value.text.empty())
            values.push_back(std::move(value));
    }
    return values;
}

IgesRecords::IgesRecords(std::string_view bytes)
{
    std::vector<Line> lines;
    while (!bytes.empty()) {
        const size_t end = std::min(bytes.find('\n'), bytes.size());
        if (!trimmed(bytes.substr(0, end)).empty())
            addLines(bytes.substr(0, end), lines);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    // What stands after the end isn't of the file.
    isInOrder = settleSections(lines) == 0 && !lines.empty() && lines.back().section == 'T';
    for (const auto& [number, line] : inOrder(lines, 'G', isInOrder)) {
        global += line;
        global.resize((global.size() + kColumns - 1) / kColumns * kColumns, ' ');
    }
    delimiters = delimitersOf(global);
    Sections sections(lines, delimiters, m_texts);
    all = sections.records();
    isInOrder &= sections.isInOrder();
}

} // namespace Vs::Translate::Salvage
