#include "Server/Translate/ObjLibraries.h"

#include <algorithm>

namespace Vs::Translate {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::vector<std::string> namesIn(std::string_view rest)
{
    std::vector<std::string> names{std::string(rest)};
    for (size_t end; (end = rest.find_first_of(kBlanks)) != std::string_view::npos;) {
        names.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(rest.size(), rest.find_first_not_of(kBlanks, end)));
        if (rest.find_first_of(kBlanks) == std::string_view::npos)
            names.emplace_back(rest);
    }
    return names;
}

bool isPlain(const std::string& name)
{
    return std::none_of(name.begin(), name.end(), [](char each) {
        const auto code = static_cast<unsigned char>(each);
        return code < ' ' || code == '\\';
    });
}

} // namespace

std::vector<std::vector<std::string>> objLibraries(std::string_view text)
{
    constexpr std::string_view kWord = "mtllib";
    std::vector<std::vector<std::string>> lines;
    for (size_t at = text.find(kWord); at != std::string_view::npos; at = text.find(kWord, at + 1)) {
        std::string_view rest = text.substr(at + kWord.size());
        rest = rest.substr(0, rest.find('\n'));
        const size_t first = rest.find_first_not_of(kBlanks);
        if (first == std::string_view::npos)
            continue;
        rest = rest.substr(first, rest.find_last_not_of(kBlanks) + 1 - first);
        lines.push_back(namesIn(rest));
    }
    return lines;
}

std::string joinedObjLines(std::string_view text)
{
    std::string joined;
    size_t begin = 0;
    for (size_t at = text.find('\\'); at != std::string_view::npos; at = text.find('\\', at + 1)) {
        size_t next = at + 1;
        if (next < text.size() && text[next] == '\r')
            ++next;
        if (next >= text.size() || text[next] != '\n')
            continue;
        joined += text.substr(begin, at - begin);
        begin = next + 1;
    }
    return begin == 0 ? std::string() : joined.append(text.substr(begin));
}

bool hasOnlyPlainLibraries(std::string_view text)
{
    for (size_t at = text.find('\\'); at != std::string_view::npos; at = text.find('\\', at + 1)) {
        const std::string_view rest = text.substr(at + 1);
        if (rest.empty() || rest.starts_with('\n') || rest.starts_with("\r\n"))
            return false;
    }
    const auto lines = objLibraries(text);
    return std::all_of(lines.begin(), lines.end(),
                       [](const auto& names) { return std::all_of(names.begin(), names.end(), isPlain); });
}

} // namespace Vs::Translate
