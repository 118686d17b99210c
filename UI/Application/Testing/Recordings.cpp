#include "UI/Application/Testing/Recordings.h"

#include "Server/Base/Exception.h"
#include "Server/Base/NumberText.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptFile.h"
#include "UI/Application/CommandLine.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/tokenizer.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <vector>

namespace Quillet {
namespace {

using Words = std::vector<std::wstring>;

struct Line
{
    size_t number;
    std::wstring text;
    Words words;
};

/// The words of a line, its flags last and sorted; none if the line means nothing.
Words wordsOf(const std::wstring& line)
{
    using Separator = boost::escaped_list_separator<wchar_t>;
    Words words;
    try {
        for (const std::wstring& word :
             boost::tokenizer<Separator, std::wstring::const_iterator, std::wstring>(
                 line, Separator(L'\\', L' ', L'"')))
            if (!word.empty() && word != L"\t")
                words.push_back(word);
    } catch (const boost::escaped_list_error&) {
        words = {line}; // A line that isn't a text line is kept as it is.
    }
    if (words.empty() || words.front().starts_with(L"#") || words.front() == L"Transcripting.Document")
        return {};
    const auto flags = std::stable_partition(
        words.begin() + 1, words.end(), [](const std::wstring& word) { return !word.starts_with(L"/"); });
    std::sort(flags, words.end());
    return words;
}

std::vector<Line> linesOf(const std::string& path)
{
    Vs::TranscriptFile file(Vs::Strings::fromBytes(path));
    std::vector<Line> lines;
    for (std::wstring text; file.next(text);)
        if (Words words = wordsOf(text); !words.empty())
            lines.push_back({file.line(), text, std::move(words)});
    return lines;
}

/// A number, or several separated by commas.
std::optional<std::vector<double>> numbersOf(const std::wstring& word)
{
    Words parts;
    boost::algorithm::split(parts, word, boost::algorithm::is_any_of(L","));
    std::vector<double> numbers;
    for (const std::wstring& part : parts) {
        const auto number = Vs::readNumber<double>(part);
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

bool isSame(const std::wstring& one, const std::wstring& other)
{
    if (boost::algorithm::iequals(one, other))
        return true;
    const auto a = numbersOf(one), b = numbersOf(other);
    constexpr double kRelative = 1e-6, kAbsolute = 1e-9;
    return a && b && std::equal(a->begin(), a->end(), b->begin(), b->end(), [=](double x, double y) {
               return std::abs(x - y) <= std::max(kAbsolute, kRelative * std::max(std::abs(x), std::abs(y)));
           });
}

bool isSame(const Line& one, const Line& other)
{
    return std::equal(one.words.begin(), one.words.end(), other.words.begin(), other.words.end(),
                      [](const std::wstring& a, const std::wstring& b) { return isSame(a, b); });
}

void tell(char sign, const std::string& file, const Line& line)
{
    std::printf("%c %s:%zu: %s\n", sign, Vs::Strings::forTerminal(file).c_str(), line.number,
                Vs::Strings::forTerminal(Vs::Strings::toBytes(line.text)).c_str());
}

} // namespace

int compareRecordings(const std::string& one, const std::string& other)
{
    std::vector<Line> a, b;
    try {
        a = linesOf(one);
        b = linesOf(other);
    } catch (const Vs::Exception& error) {
        std::fprintf(stderr, "quillet: %s\n", Vs::Strings::forTerminal(error.what()).c_str());
        return kExitUsage;
    }
    // The length of the longest common subsequence of the remainders, from the end to the beginning.
    const size_t columns = b.size() + 1;
    std::vector<uint32_t> common((a.size() + 1) * columns);
    for (size_t i = a.size(); i-- > 0;)
        for (size_t k = b.size(); k-- > 0;)
            common[i * columns + k] =
                isSame(a[i], b[k]) ? common[(i + 1) * columns + k + 1] + 1
                                   : std::max(common[(i + 1) * columns + k], common[i * columns + k + 1]);
    bool differ = false;
    for (size_t i = 0, k = 0; i < a.size() || k < b.size();) {
        if (i < a.size() && k < b.size() && isSame(a[i], b[k])) {
            ++i;
            ++k;
            continue;
        }
        differ = true;
        if (i < a.size() && (k == b.size() || common[(i + 1) * columns + k] >= common[i * columns + k + 1]))
            tell('-', one, a[i++]);
        else
            tell('+', other, b[k++]);
    }
    return differ ? kExitLineFailed : kExitOk;
}

} // namespace Quillet
