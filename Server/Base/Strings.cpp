#include "Server/Base/Strings.h"

#include <algorithm>
#include <cwctype>
#include <numeric>
#include <vector>

namespace Vs::Strings {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
/// Plus the value of a byte that is not UTF-8: a value reserved for surrogates, which valid text has in pairs
/// and in UTF-16 alone.
constexpr char32_t kBytes = 0xDC00;
constexpr char32_t kFirstByte = kBytes + 0x80, kLastByte = kBytes + 0xFF;

bool isCodePoint(char32_t value)
{
    return value < 0x110000 && (value < 0xD800 || value > 0xDFFF);
}

// Decodes one code point at `at` and moves `at` past it. A bad byte is skipped by itself and gives kBytes
// plus itself.
char32_t decode(std::string_view text, size_t& at)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at++);
    if (lead < 0x80)
        return lead;
    const size_t extra = lead >= 0xF0 && lead < 0xF5 ? 3u : lead >= 0xE0 ? 2u : lead >= 0xC2 ? 1u : 0u;
    if (extra == 0 || lead >= 0xF5 || at + extra > text.size())
        return kBytes + lead;
    char32_t value = lead & (0x3Fu >> extra);
    for (size_t i = 0; i < extra; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80)
            return kBytes + lead;
        value = (value << 6) | (byte(at + i) & 0x3F);
    }
    static constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (value < kSmallest[extra] || !isCodePoint(value))
        return kBytes + lead;
    at += extra;
    return value;
}

void encode(char32_t value, std::string& text)
{
    if (value < 0x800) {
        text.push_back(static_cast<char>(0xC0 | (value >> 6)));
        text.push_back(static_cast<char>(0x80 | (value & 0x3F)));
    } else if (value < 0x10000) {
        text.push_back(static_cast<char>(0xE0 | (value >> 12)));
        text.push_back(static_cast<char>(0x80 | ((value >> 6) & 0x3F)));
        text.push_back(static_cast<char>(0x80 | (value & 0x3F)));
    } else {
        text.push_back(static_cast<char>(0xF0 | (value >> 18)));
        text.push_back(static_cast<char>(0x80 | ((value >> 12) & 0x3F)));
        text.push_back(static_cast<char>(0x80 | ((value >> 6) & 0x3F)));
        text.push_back(static_cast<char>(0x80 | (value & 0x3F)));
    }
}

enum class BadBytes { Replaced, Kept };

template <BadBytes kBad>
std::wstring decoded(std::string_view bytes)
{
    std::wstring wide;
    wide.reserve(bytes.size());
    for (size_t at = 0; at < bytes.size();) {
        const char32_t value = decode(bytes, at);
        const bool bad = value >= kFirstByte && value <= kLastByte;
        wide.push_back(static_cast<wchar_t>(bad && kBad == BadBytes::Replaced ? kReplacement : value));
    }
    return wide;
}

template <BadBytes kBad>
std::string encoded(std::wstring_view wide)
{
    std::string text;
    text.reserve(wide.size());
    for (const wchar_t character : wide) {
        const auto value = static_cast<char32_t>(character);
        if (value < 0x80)
            text.push_back(static_cast<char>(value)); // Nearly every call.
        else if (kBad == BadBytes::Kept && value >= kFirstByte && value <= kLastByte)
            text.push_back(static_cast<char>(value - kBytes));
        else
            encode(isCodePoint(value) ? value : kReplacement, text);
    }
    return text;
}

// Whether the byte belongs to a control character other than tab and line feed. Those above U+0080 are two
// bytes, of which the second decides.
bool isControl(std::string_view text, size_t at)
{
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte == 0xC2 && at + 1 < text.size())
        return static_cast<unsigned char>(text[at + 1]) < 0xA0;
    return (byte < 0x20 && byte != '\t' && byte != '\n') || byte == 0x7F;
}

} // namespace

std::wstring widen(std::string_view narrow)
{
    return decoded<BadBytes::Replaced>(narrow);
}

std::string narrow(std::wstring_view wide)
{
    return encoded<BadBytes::Replaced>(wide);
}

std::wstring fromBytes(std::string_view bytes)
{
    return decoded<BadBytes::Kept>(bytes);
}

std::string toBytes(std::wstring_view wide)
{
    return encoded<BadBytes::Kept>(wide);
}

std::wstring quote(std::wstring_view text)
{
    const bool plain = !text.empty() && text.front() != L'/' &&
                       text.find_first_of(L" \t\r\n\"\\#") == std::wstring_view::npos;
    if (plain)
        return std::wstring(text);
    std::wstring quoted = L"\"";
    for (const wchar_t character : text) {
        if (character == L'"' || character == L'\\')
            quoted.push_back(L'\\');
        quoted.push_back(character);
    }
    quoted.push_back(L'"');
    return quoted;
}

std::string forTerminal(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (size_t at = 0; at < text.size(); ++at) {
        if (!isControl(text, at)) {
            result.push_back(text[at]);
            continue;
        }
        if (text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n')
            continue;
        result += "\xEF\xBF\xBD";
        at += static_cast<unsigned char>(text[at]) == 0xC2;
    }
    return result;
}

size_t editDistance(std::wstring_view a, std::wstring_view b)
{
    const auto lowered = [](wchar_t letter) { return std::towlower(static_cast<wint_t>(letter)); };
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t change = diagonal + (lowered(a[i]) != lowered(b[j]) ? 1 : 0);
            diagonal = row[j + 1];
            row[j + 1] = std::min({change, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace Vs::Strings
