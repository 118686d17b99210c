#include "UI/Base/Window/FuzzyMatch.h"

#include <algorithm>
#include <array>
#include <limits>

namespace Vu {
namespace {

constexpr int kLetter = 16;
constexpr int kWordStart = 10;
constexpr int kTextStart = 6; ///< Besides kWordStart.
constexpr int kInARow = 12;
constexpr int kLeftOut = 1;      ///< For each letter between two matches,
constexpr int kMostLeftOut = 12; ///< but no more than this.
/// No sum of scores comes near it.
constexpr int kNever = std::numeric_limits<int>::min() / 2;

bool startsWord(const QString& text, qsizetype i)
{
    if (!text[i].isLetterOrNumber())
        return false;
    if (i == 0)
        return true;
    const QChar before = text[i - 1];
    return !before.isLetterOrNumber() || (text[i].isUpper() && before.isLower()) ||
           text[i].isDigit() != before.isDigit();
}

int pointsAt(const SearchText& text, size_t i)
{
    return kLetter + (text.beginsWord(i) ? kWordStart : 0) + (i == 0 ? kTextStart : 0);
}

/// For each position of the text, the best score of the letters so far with the last one matched there.
using Scores = std::array<int, SearchText::kLongest>;

/// The scores with one letter more. The nearer a gap, the less it costs, up to a limit, so the best match
/// comes either from near by, at one more letter's cost for each step, or from anywhere.
void addLetter(const SearchText& text, char16_t letter, Scores& scores)
{
    int near = kNever, anywhere = kNever, last = kNever;
    for (size_t i = 0; i < text.letters().size(); ++i) {
        const int way = std::max({near, anywhere - kMostLeftOut, last + kInARow});
        const int here = scores[i];
        const bool found = text.letters()[i] == letter && way > kNever / 2;
        scores[i] = found ? way + pointsAt(text, i) : kNever;
        near = std::max(near, last) - kLeftOut;
        anywhere = std::max(anywhere, last);
        last = here;
    }
}

bool hasAll(const std::u16string& letters, const std::u16string& wanted)
{
    size_t next = 0;
    for (size_t i = 0; i < letters.size() && next < wanted.size(); ++i)
        if (letters[i] == wanted[next])
            ++next;
    return next == wanted.size();
}

} // namespace

SearchText::SearchText(const QString& text)
{
    const QString parts = text.left(kLongest).normalized(QString::NormalizationForm_D);
    for (qsizetype i = 0; i < parts.size() && m_letters.size() < kLongest; ++i) {
        if (parts[i].isMark())
            continue;
        m_letters.push_back(parts[i].toCaseFolded().unicode());
        m_begins.push_back(startsWord(parts, i));
    }
}

std::optional<int> FuzzyMatch::score(const SearchText& text, const std::u16string& wanted)
{
    const std::u16string letters = wanted.substr(0, kLongestWanted);
    if (letters.empty())
        return 0;
    if (!hasAll(text.letters(), letters))
        return std::nullopt;
    Scores scores;
    scores.fill(kNever);
    for (size_t i = 0; i < text.letters().size(); ++i)
        scores[i] = text.letters()[i] == letters[0] ? pointsAt(text, i) : kNever;
    for (size_t next = 1; next < letters.size(); ++next)
        addLetter(text, letters[next], scores);
    return *std::ranges::max_element(scores);
}

std::optional<int> FuzzyMatch::scoreInOnePiece(const SearchText& text, const std::u16string& wanted)
{
    const std::u16string letters = wanted.substr(0, kLongestWanted);
    std::optional<int> best;
    for (size_t at = text.letters().find(letters); at != std::u16string::npos;
         at = text.letters().find(letters, at + 1)) {
        int sum = 0;
        for (size_t i = 0; i < letters.size(); ++i)
            sum += pointsAt(text, at + i) + (i > 0 ? kInARow : 0);
        best = std::max(best.value_or(sum), sum);
    }
    return letters.empty() ? std::optional<int>(0) : best;
}

} // namespace Vu
