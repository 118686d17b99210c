#include "Server/Base/TranscriptKind.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Private/TextLine.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptFile.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cwctype>
#include <string>
#include <string_view>

namespace Vs {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Without the byte order mark and line end that an editor may have left.
std::string firstLine(const std::wstring& path)
{
    boost::filesystem::ifstream stream{boost::filesystem::path(path)};
    std::string line(64, '\0'); // Longer than those that are looked for.
    stream.read(line.data(), static_cast<std::streamsize>(line.size()));
    line.resize(static_cast<size_t>(stream.gcount()));
    line.resize(std::min(line.find('\n'), line.size()));
    if (line.starts_with(kByteOrderMark))
        line.erase(0, kByteOrderMark.size());
    if (line.ends_with('\r'))
        line.pop_back();
    return line;
}

/// The area and the name with which the first line begins that isn't empty or a comment; both empty if it
/// begins with anything else.
struct CommandName
{
    std::wstring area, name;
};

CommandName firstCommand(const std::wstring& path)
{
    try {
        TranscriptFile file(path);
        std::wstring line;
        while (file.next(line)) {
            TextLine words(line);
            if (words.skipBlanks() && line[words.position()] != L'#') {
                std::wstring word(words.plainWord());
                if (word.starts_with(L"!"))
                    word.erase(0, 1);
                const size_t dot = word.find(L'.');
                return dot == std::wstring::npos ? CommandName()
                                                 : CommandName{word.substr(0, dot), word.substr(dot + 1)};
            }
        }
    } catch (const Exception&) {
        // It can't be read, or has a line longer than a transcript's may be.
    }
    return {};
}

} // namespace

bool isTranscript(const std::wstring& path)
{
    return TranscriptMgr::typeOf(path) == kTextTranscript || firstLine(path) == kPythonTranscriptHead;
}

bool looksLikeTextTranscript(const std::wstring& path)
{
    if (firstLine(path).starts_with(kTextTranscriptHead))
        return true;
    const auto isName = [](const std::wstring& text) {
        return !text.empty() && text.front() >= L'A' && text.front() <= L'Z' &&
               std::all_of(text.begin(), text.end(),
                           [](wchar_t c) { return c < 0x80 && std::iswalnum(static_cast<wint_t>(c)); });
    };
    const auto [area, name] = firstCommand(path);
    return isName(area) && isName(name);
}

bool holdsNoTranscript(const std::wstring& path, ETranscriptType type)
{
    namespace fs = boost::filesystem;
    boost::system::error_code error;
    if (!fs::is_regular_file(path, error) || fs::file_size(path, error) == 0)
        return false;
    if (type == kPythonTranscript)
        return !isTranscript(path);
    if (firstLine(path).starts_with(kTextTranscriptHead))
        return false;
    const auto [area, name] = firstCommand(path);
    return !TextCommandMgr::get()->find(area, name);
}

} // namespace Vs
