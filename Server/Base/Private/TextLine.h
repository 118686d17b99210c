#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Vs {

/// Splits a line of text, word by word; the grammar is described at TextCommandMgr.
class TextLine
{
public:
    explicit TextLine(std::wstring_view line) : m_line(line) {}

    [[nodiscard]] static bool isBlank(wchar_t character)
    {
        return character == L' ' || character == L'\t' || character == L'\r' || character == L'\n';
    }

    /// Skips blanks. Returns false at the end of the line.
    bool skipBlanks();

    /// A word taken literally, up to the next blank.
    std::wstring_view plainWord();

    enum class Word { Parameter, Flag };
    /// The next word without its quotes, or a flag without its slash. Call it only after skipBlanks returned
    /// true. Throws Vs::Exception that names the column when a quote isn't closed.
    [[nodiscard]] Word next(std::wstring& text);

    /// Where the next word begins, or would.
    size_t position() const { return m_at; }

private:
    std::wstring_view m_line;
    size_t m_at = 0;
};

} // namespace Vs
