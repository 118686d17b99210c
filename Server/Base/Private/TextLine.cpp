#include "Server/Base/Private/TextLine.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Require.h"

#include <algorithm>

namespace Vs {

namespace {

bool isNameCharacter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'_';
}

bool isFlag(std::wstring_view word)
{
    return word.size() > 1 && word.front() == L'/' &&
           std::all_of(word.begin() + 1, word.end(), isNameCharacter);
}

} // namespace

bool TextLine::skipBlanks()
{
    while (m_at < m_line.size() && isBlank(m_line[m_at]))
        ++m_at;
    return m_at < m_line.size();
}

std::wstring_view TextLine::plainWord()
{
    const size_t start = m_at;
    while (m_at < m_line.size() && !isBlank(m_line[m_at]))
        ++m_at;
    return m_line.substr(start, m_at - start);
}

TextLine::Word TextLine::next(std::wstring& text)
{
    require(m_at < m_line.size() && !isBlank(m_line[m_at]), "a word is asked for only where one begins");
    // Most words have no quote and are copied in one piece.
    const size_t start = m_at;
    while (m_at < m_line.size() && !isBlank(m_line[m_at]) && m_line[m_at] != L'"')
        ++m_at;
    text.assign(m_line.substr(start, m_at - start));
    if (m_at == m_line.size() || isBlank(m_line[m_at])) {
        if (!isFlag(text))
            return Word::Parameter;
        text.erase(0, 1);
        return Word::Flag;
    }

    size_t opened = 0;
    bool inQuotes = false;
    for (; m_at < m_line.size() && (inQuotes || !isBlank(m_line[m_at])); ++m_at) {
        const wchar_t character = m_line[m_at];
        const wchar_t following = m_at + 1 < m_line.size() ? m_line[m_at + 1] : L'\0';
        if (character == L'"') {
            inQuotes = !inQuotes;
            opened = m_at;
        } else if (inQuotes && character == L'\\' && (following == L'"' || following == L'\\')) {
            text.push_back(following);
            ++m_at;
        } else {
            text.push_back(character);
        }
    }
    if (inQuotes)
        throw Exception("The quote at column " + std::to_string(opened + 1) + " is not closed.");
    return Word::Parameter;
}

} // namespace Vs
