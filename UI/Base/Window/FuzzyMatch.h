#pragma once

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace Vu {

/// A text prepared for searching: without case and accents, and with word starts marked ("CloseAllDocuments"
/// has three). Texts longer than kLongest are truncated.
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

/// How well a text matches what is typed. All letters must occur in order, and the score is that of the best
/// match: letters at word starts and consecutive letters score more, gaps score less. Scores of different
/// texts are comparable for the same letters.
namespace FuzzyMatch {

/// The longest pattern; further letters are ignored.
constexpr size_t kLongestWanted = 64;

/// Nothing if a letter is missing. An empty pattern has the score 0 everywhere.
std::optional<int> score(const SearchText& text, const std::u16string& wanted);
/// The same for a contiguous match, for sentences, in which almost any letters occur in order.
std::optional<int> scoreInOnePiece(const SearchText& text, const std::u16string& wanted);

} // namespace FuzzyMatch

} // namespace Vu
