#include "Server/Base/Strings.h"

#include <algorithm>
#include <cwctype>
#include <numeric>
#include <vector>

namespace Vs::Strings {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isCodePoint(char32_t value)
{
    return value < 0x110000 && (value < 0xD800 || value > 0xDFFF);
}

// Decodes one code point at `at` and moves `at` behind it; a bad byte is skipped alone.
char32_t decode(std::string_view text, size_t& at)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at++);
    if (lead < 0x80)
        return lead;
    const size_t extra = lead >= 0xF0 && lead < 0xF5 ? 3u : lead >= 0xE0 ? 2u : lead >= 0xC2 ? 1u : 0u;
    if (extra == 0 || lead >= 0xF5 || at + extra > text.size())
        return kReplacement;
    char32_t value = lead & (0x3Fu >> extra);
    for (size_t i = 0; i < extra; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80)
            return kReplacement;
        value = (value << 6) | (byte(at + i) & 0x3F);
    }
    static constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (value < kSmallest[extra] || !isCodePoint(value))
        return kReplacement;
    at += extra;
    return value;
}

} // namespace

std::wstring widen(std::string_view narrow)
{
    std::wstring wide;
    wide.reserve(narrow.size());
    for (size_t at = 0; at < narrow.size();)
        wide.push_back(static_cast<wchar_t>(decode(narrow, at)));
    return wide;
}

std::string narrow(std::wstring_view wide)
{
    std::string text;
    text.reserve(wide.size());
    for (const wchar_t character : wide) {
        const auto raw = static_cast<char32_t>(character);
        const char32_t value = isCodePoint(raw) ? raw : kReplacement;
        if (value < 0x80) {
            text.push_back(static_cast<char>(value));
        } else if (value < 0x800) {
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
    return text;
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
