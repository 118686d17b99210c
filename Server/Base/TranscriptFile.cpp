#include "Server/Base/TranscriptFile.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"

#include <boost/filesystem/operations.hpp>

#include <cerrno>
#include <cstring>

namespace Vs {

namespace {

constexpr size_t kBufferSize = 1 << 16;

/// The name in `${NAME}` at the front of the text, or nothing.
std::wstring_view parameterName(std::wstring_view text)
{
    if (!text.starts_with(L"${"))
        return {};
    const size_t end =
        text.find_first_not_of(L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_", 2);
    return end != std::wstring_view::npos && text[end] == L'}' ? text.substr(2, end - 2)
                                                               : std::wstring_view();
}

std::wstring escaped(std::wstring_view value)
{
    std::wstring text;
    for (const wchar_t character : value) {
        if (character == L'"' || character == L'\\')
            text.push_back(L'\\');
        text.push_back(character);
    }
    return text;
}

} // namespace

TranscriptFile::TranscriptFile(boost::filesystem::path path) : m_path(std::move(path))
{
    boost::system::error_code error;
    if (boost::filesystem::is_directory(m_path, error))
        throw Exception("The transcript " + m_path.string() + " is a folder.");
    m_file.reset(std::fopen(m_path.c_str(), "rbe"));
    if (!m_file)
        throw Exception("The transcript " + m_path.string() + " cannot be read: " + std::strerror(errno) +
                        '.');
    std::setvbuf(m_file.get(), nullptr, _IOFBF, kBufferSize);
}

bool TranscriptFile::next(std::wstring& text)
{
    // A character has at most four bytes; whatever is longer than that is counted but not kept.
    constexpr size_t kLongest = TextCommandMgr::kLongestLine * 4;
    m_buffer.clear();
    size_t length = 0;
    int character = EOF;
    while ((character = getc_unlocked(m_file.get())) != EOF && character != '\n')
        if (++length <= kLongest)
            m_buffer.push_back(static_cast<char>(character));
    if (character == EOF && std::ferror(m_file.get())) {
        // The medium will not get better: what follows is the end.
        const std::string cause = std::strerror(errno);
        std::clearerr(m_file.get());
        std::fseek(m_file.get(), 0, SEEK_END);
        ++m_line;
        throw Exception("The transcript cannot be read further: " + cause + '.');
    }
    if (character == EOF && length == 0)
        return false;
    ++m_line;
    if (length > kLongest) {
        m_buffer = {};
        throw Exception("The line is longer than the " + std::to_string(TextCommandMgr::kLongestLine) +
                        " characters that are allowed.");
    }
    if (m_line == 1 && m_buffer.starts_with("\xEF\xBB\xBF"))
        m_buffer.erase(0, 3);
    if (!m_buffer.empty() && m_buffer.back() == '\r')
        m_buffer.pop_back();
    text = Strings::widen(m_buffer);
    return true;
}

std::wstring substituteParameters(std::wstring_view line, const TranscriptParameters& parameters)
{
    std::wstring result;
    bool inQuotes = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const wchar_t character = line[i];
        const std::wstring_view name =
            character == L'$' ? parameterName(line.substr(i)) : std::wstring_view();
        if (character == L'$' && line.substr(i).starts_with(L"$${")) {
            result += L"${";
            i += 2;
        } else if (!name.empty()) {
            const auto found = parameters.find(Strings::narrow(name));
            const std::wstring value =
                found == parameters.end() ? std::wstring() : Strings::widen(found->second);
            if (inQuotes)
                result += escaped(value);
            else if (!value.empty())
                result += Strings::quote(value);
            i += name.size() + 2;
        } else if (inQuotes && character == L'\\' && i + 1 < line.size()) {
            result.push_back(character);
            result.push_back(line[++i]);
        } else {
            inQuotes ^= character == L'"';
            result.push_back(character);
        }
    }
    return result;
}

std::wstring escapeParameters(std::wstring_view line)
{
    std::wstring result;
    for (size_t i = 0; i < line.size(); ++i) {
        if (line.substr(i).starts_with(L"${"))
            result.push_back(L'$');
        result.push_back(line[i]);
    }
    return result;
}

} // namespace Vs
