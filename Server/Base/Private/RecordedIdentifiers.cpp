#include "Server/Base/Private/RecordedIdentifiers.h"

#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string_view>
#include <vector>

namespace Vs {

namespace {

const std::regex& identifier()
{
    static const std::regex form("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}");
    return form;
}

/// A line that is nothing but identifiers, in either kind of transcript.
constexpr std::string_view kNaming = "Transcripting.Document";

std::set<std::string> identifiersIn(const std::string& line)
{
    std::set<std::string> found;
    for (std::sregex_iterator each(line.begin(), line.end(), identifier()), end; each != end; ++each)
        found.insert(each->str());
    return found;
}

/// The line without its last parameter, if that is this identifier.
std::string withoutLast(const std::string& line, const std::string& identifier)
{
    for (const std::string& ending : {" Uuid=" + identifier, ' ' + identifier})
        if (line.ends_with(ending))
            return line.substr(0, line.size() - ending.size());
    for (const std::string quote : {"'", "\""})
        for (const std::string& before : {std::string(", "), std::string()}) {
            const std::string ending = before + quote + identifier + quote + ')';
            if (line.ends_with(ending))
                return line.substr(0, line.size() - ending.size()) + ')';
        }
    return line;
}

} // namespace

std::string withoutUnnamedIdentifiers(const std::string& transcript)
{
    std::vector<std::string> lines;
    std::map<std::string, int> linesWith;
    std::istringstream stream(transcript);
    for (std::string line; std::getline(stream, line);) {
        for (const std::string& each : identifiersIn(line))
            ++linesWith[each];
        lines.push_back(std::move(line));
    }
    std::string result;
    for (std::string& line : lines) {
        const std::set<std::string> all = identifiersIn(line);
        bool isNamed = false;
        for (const std::string& each : all)
            isNamed |= linesWith[each] > 1;
        if (!all.empty() && !isNamed && line.starts_with(kNaming))
            continue;
        if (all.size() == 1 && !isNamed && !line.starts_with('#'))
            line = withoutLast(line, *all.begin());
        result += line + '\n';
    }
    return result;
}

} // namespace Vs
