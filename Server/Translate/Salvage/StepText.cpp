#include "Server/Translate/Salvage/StepText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

namespace Vs::Translate::Salvage {

namespace {

constexpr double kLargest = 1e9;
constexpr int kDeepest = 8;

bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isNamePart(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || isDigit(c);
}

size_t afterBlanks(std::string_view bytes, size_t at)
{
    for (;;) {
        while (at < bytes.size() && isBlank(bytes[at]))
            ++at;
        if (bytes.substr(at, 2) != "/*")
            return at;
        const size_t end = bytes.find("*/", at + 2);
        if (end == bytes.npos)
            return bytes.size();
        at = end + 2;
    }
}

struct Beginning
{
    uint32_t number;
    size_t after; ///< After the "=".
};

/// "#12 =" at that place.
std::optional<Beginning> beginningAt(std::string_view bytes, size_t at)
{
    if (at >= bytes.size() || bytes[at] != '#')
        return std::nullopt;
    uint32_t number = 0;
    const auto [end, error] = std::from_chars(bytes.data() + at + 1, bytes.data() + bytes.size(), number);
    if (error != std::errc() || number == 0)
        return std::nullopt;
    const size_t equals = afterBlanks(bytes, size_t(end - bytes.data()));
    if (equals >= bytes.size() || bytes[equals] != '=')
        return std::nullopt;
    return Beginning{number, equals + 1};
}

/// Where the instance ends that begins there: at its ";", or where the next one begins though it hasn't
/// ended. A lost quote turns everything after it inside out, so that a text may contain what looks like an
/// end and a beginning.
size_t endOf(std::string_view bytes, size_t at)
{
    bool isText = false;
    for (; at < bytes.size(); ++at) {
        switch (bytes[at]) {
        case '\'':
            isText = !isText;
            break;
        case ';':
            if (!isText || beginningAt(bytes, afterBlanks(bytes, at + 1)))
                return at;
            break;
        case '#':
            if (!isText && beginningAt(bytes, at))
                return at;
            break;
        default:
            break;
        }
    }
    return at;
}

/// Reads a statement's text from left to right.
class Parser
{
public:
    explicit Parser(std::string_view text) : m_text(text) {}

    bool records(std::vector<StepRecord>& records);

private:
    void skip() { m_at = afterBlanks(m_text, m_at); }
    bool is(char c)
    {
        skip();
        return m_at < m_text.size() && m_text[m_at] == c;
    }
    bool take(char c)
    {
        const bool found = is(c);
        m_at += found;
        return found;
    }
    std::string_view since(size_t begin) const { return m_text.substr(begin, m_at - begin); }
    std::string_view name();
    bool record(StepRecord& record);
    bool list(std::vector<StepValue>& values, int depth);
    bool value(StepValue& value, int depth);
    bool reference(StepValue& value);
    bool quoted(StepValue& value);
    bool word(StepValue& value);
    bool number(StepValue& value);

    std::string_view m_text;
    size_t m_at = 0;
};

std::string_view Parser::name()
{
    skip();
    const size_t begin = m_at;
    while (m_at < m_text.size() && isNamePart(m_text[m_at]))
        ++m_at;
    return since(begin);
}

bool Parser::records(std::vector<StepRecord>& records)
{
    records.clear();
    const bool isComplex = take('(');
    do {
        if (!record(records.emplace_back()))
            return false;
    } while (isComplex && !is(')'));
    if (isComplex && !take(')'))
        return false;
    skip();
    return m_at == m_text.size();
}

bool Parser::record(StepRecord& record)
{
    record.name = name();
    return !record.name.empty() && !isDigit(record.name[0]) && take('(') && list(record.values, 0);
}

/// After its parenthesis.
bool Parser::list(std::vector<StepValue>& values, int depth)
{
    if (take(')'))
        return true;
    do {
        if (!value(values.emplace_back(), depth))
            return false;
    } while (take(','));
    return take(')');
}

bool Parser::value(StepValue& value, int depth)
{
    using Kind = StepValue::Kind;
    skip();
    if (m_at >= m_text.size() || depth > kDeepest)
        return false;
    const char first = m_text[m_at];
    if (first == '$' || first == '*') {
        ++m_at;
        value.kind = first == '$' ? Kind::Omitted : Kind::Derived;
        return true;
    }
    if (first == '#')
        return reference(value);
    if (first == '\'' || first == '"')
        return quoted(value);
    if (first == '.')
        return word(value);
    if (first == '(') {
        ++m_at;
        value.kind = Kind::List;
        return list(value.items, depth + 1);
    }
    if (isNamePart(first) && !isDigit(first)) {
        value.kind = Kind::Typed;
        value.text = name();
        return take('(') && list(value.items, depth + 1);
    }
    return number(value);
}

bool Parser::reference(StepValue& value)
{
    const size_t begin = m_at++;
    const auto [end, error] =
        std::from_chars(m_text.data() + m_at, m_text.data() + m_text.size(), value.reference);
    m_at = size_t(end - m_text.data());
    value.kind = StepValue::Kind::Reference;
    value.text = since(begin);
    return error == std::errc() && value.reference != 0;
}

bool Parser::quoted(StepValue& value)
{
    const size_t begin = m_at;
    const char quote = m_text[m_at];
    for (++m_at; m_at < m_text.size(); ++m_at) {
        if (m_text[m_at] != quote)
            continue;
        if (m_text.substr(m_at + 1, 1) != std::string_view(&quote, 1))
            break;
        ++m_at; // A doubled one stands for itself.
    }
    if (m_at >= m_text.size())
        return false;
    ++m_at;
    value.kind = StepValue::Kind::Text;
    value.text = since(begin);
    return true;
}

bool Parser::word(StepValue& value)
{
    const size_t begin = m_at++;
    while (m_at < m_text.size() && isNamePart(m_text[m_at]))
        ++m_at;
    if (m_at >= m_text.size() || m_text[m_at] != '.' || m_at == begin + 1)
        return false;
    ++m_at;
    value.kind = StepValue::Kind::Word;
    value.text = since(begin);
    return true;
}

bool Parser::number(StepValue& value)
{
    const size_t begin = m_at;
    m_at += m_text[m_at] == '+';
    const auto [end, error] =
        std::from_chars(m_text.data() + m_at, m_text.data() + m_text.size(), value.number);
    m_at = size_t(end - m_text.data());
    value.kind = StepValue::Kind::Number;
    value.text = since(begin);
    value.isInteger = value.text.find_first_of(".eE") == value.text.npos;
    return error == std::errc() && std::abs(value.number) < kLargest;
}

} // namespace

std::vector<StepStatement> statementsOf(std::string_view bytes, size_t& lost)
{
    std::vector<StepStatement> statements;
    lost = 0;
    // The header contains no instances.
    size_t at = bytes.find('#');
    while (at < bytes.size()) {
        if (const auto begin = beginningAt(bytes, at)) {
            const size_t end = endOf(bytes, begin->after);
            statements.push_back({begin->number, bytes.substr(begin->after, end - begin->after)});
            at = end;
            // The file's end isn't an instance either, nor does it count as lost.
            at = afterBlanks(bytes, std::min(at + (at < bytes.size() && bytes[at] == ';'), bytes.size()));
            continue;
        }
        lost += !statements.empty() && bytes.substr(at, 6) != "ENDSEC";
        if (bytes.substr(at, 6) == "ENDSEC" && bytes.find("DATA", at) == bytes.npos)
            break;
        at = bytes.find('#', at + 1);
        while (at != bytes.npos && !beginningAt(bytes, at))
            at = bytes.find('#', at + 1);
    }
    return statements;
}

bool parse(std::string_view text, std::vector<StepRecord>& records)
{
    return Parser(text).records(records);
}

} // namespace Vs::Translate::Salvage
