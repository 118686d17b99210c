#include "Server/DataModel/Exchange/LostFaces.h"

#include <regex>

namespace Vs::Exchange {

namespace {

constexpr const char* kNameless = "a part without a name";

} // namespace

std::string LostFaces::text() const
{
    return std::to_string(lost) + " of " + std::to_string(all) + (all == 1 ? " face of " : " faces of ") +
           (part.empty() ? kNameless : '"' + part + '"');
}

std::optional<LostFaces> LostFaces::ofWarning(const std::string& warning)
{
    constexpr size_t kLongest = 4096; // Matching takes memory for each letter.
    static const std::regex pattern("lacks (\\d{1,9}) of (\\d{1,9}) faces? of (?:\"(.+)\"|[^\"]+)");
    std::smatch match;
    if (warning.size() > kLongest || !std::regex_match(warning, match, pattern))
        return std::nullopt;
    return LostFaces{std::stoul(match[1]), std::stoul(match[2]), match[3]};
}

} // namespace Vs::Exchange
