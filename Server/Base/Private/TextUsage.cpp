#include "Server/Base/Private/TextUsage.h"

#include "Server/Base/TextCompletion.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>

namespace Vs {
namespace {

using Count = std::optional<size_t>;

Count sum(Count a, Count b)
{
    return a && b ? Count(*a + *b) : std::nullopt;
}

Count larger(Count a, Count b)
{
    return a && b ? Count(std::max(*a, *b)) : std::nullopt;
}

/// Takes a bracketed piece, or a word, off the front of `text`.
std::wstring_view takePiece(std::wstring_view& text)
{
    size_t depth = 0, end = 0;
    for (; end < text.size() && (depth > 0 || text[end] != L' '); ++end) {
        if (text[end] == L'[' || text[end] == L'<')
            ++depth;
        else if ((text[end] == L']' || text[end] == L'>') && depth > 0)
            --depth;
    }
    const std::wstring_view piece = text.substr(0, end);
    text.remove_prefix(std::min(text.size(), end + 1));
    return piece;
}

/// How many parameters the pieces of a usage stand for. With `onlyUsage`, the first other word ends it.
Count countOf(std::wstring_view text, bool onlyUsage)
{
    Count count = 0;
    while (!text.empty()) {
        const std::wstring_view piece = takePiece(text);
        if (piece.empty() || piece.front() == L'/')
            continue;
        if (piece.ends_with(L"..."))
            return std::nullopt;
        if (piece.front() == L'[' && piece.back() == L']') {
            Count most = 0;
            std::vector<std::wstring> choices;
            const std::wstring inner(piece.substr(1, piece.size() - 2));
            boost::split(choices, inner, boost::is_any_of(L"|"));
            for (const std::wstring& choice : choices)
                most = larger(most, countOf(choice, false));
            count = sum(count, most);
        } else if (piece.front() == L'<' || piece.find(L'|') != piece.npos || !onlyUsage) {
            count = sum(count, 1);
        } else {
            break;
        }
    }
    return count;
}

} // namespace

TextUsage::TextUsage(const std::wstring& help) : mostParameters(countOf(help, true))
{
    for (const std::wstring& flag : TextCompletion::flagsOf(help))
        flags.push_back(flag.substr(1));
}

const std::wstring* TextUsage::flag(std::wstring_view text) const
{
    const auto found = std::find_if(flags.begin(), flags.end(), [&](const std::wstring& each) {
        return boost::algorithm::iequals(each, text);
    });
    return found == flags.end() ? nullptr : &*found;
}

} // namespace Vs
