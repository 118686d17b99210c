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

} // namespace Vs::Translate
