#include "Server/DataModel/Exchange/LostFaces.h"

#include <regex>

namespace Vs::Exchange {

namespace {

constexpr const char* kNameless = "a part without a name";
constexpr const char* kNotShown = " that can't be shown";

} // namespace

std::string LostFaces::text() const
{
    return std::to_string(lost) + " of " + std::to_string(all) + (all == 1 ? " face of " : " faces of ") +
           (part.empty() ? kNameless : '"' + part + '"');
}

std::string LostFaces::warning() const
{
    return areThere ? "has " + text() + kNotShown : "lacks " + text();
}

std::optional<LostFaces> LostFaces::ofWarning(const std::string& warning)
{
    constexpr size_t kLongest = 4096; // Matching takes memory for each letter.
    static const std::string faces = " (\\d{1,9}) of (\\d{1,9}) faces? of (?:\"(.+)\"|[^\"]+)";
    static const std::regex lacks("lacks" + faces);
    static const std::regex notShown("has" + faces + kNotShown + "(?:: .*)?");
    std::smatch match;
    if (warning.size() > kLongest)
        return std::nullopt;
    const bool areThere = std::regex_match(warning, match, notShown);
    if (!areThere && !std::regex_match(warning, match, lacks))
        return std::nullopt;
    return LostFaces{std::stoul(match[1]), std::stoul(match[2]), match[3], areThere};
}

} // namespace Vs::Exchange
