#pragma once

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace Vu {

/// A text as it is searched: without the case of its letters and without their accents, and with a mark where
/// its words begin ("CloseAllDocuments" has three). Of a text longer than kLongest there is the beginning.
class SearchText
{
public:
    static constexpr size_t kLongest = 512;

    SearchText() = default;
    explicit SearchText(const QString& text);

    const std::u16string& letters() const { return m_letters; }
    bool beginsWord(size_t i) const { return m_begins[i]; }

private:
    std::u16string m_letters;
    std::vector<bool> m_begins;
};

/// How well a text answers what is typed. The letters must all be there, in their order, and the score is
/// that of the best way to find them: letters at the start of a word and letters in a row count more, what
/// is left out between them counts against it. Scores are comparable between texts for the same letters.
namespace FuzzyMatch {

/// The longest that is looked for; more letters are left out.
constexpr size_t kLongestWanted = 64;

/// Nothing if a letter is missing. Nothing wanted has the score 0 everywhere.
std::optional<int> score(const SearchText& text, const std::u16string& wanted);
/// The same of letters that stand in one piece, for sentences, in which any letters can be found in order.
std::optional<int> scoreInOnePiece(const SearchText& text, const std::u16string& wanted);

} // namespace FuzzyMatch

} // namespace Vu
