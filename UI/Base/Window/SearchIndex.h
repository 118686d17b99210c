#pragma once

#include "UI/Base/Window/FuzzyMatch.h"

#include <QString>

#include <string>
#include <vector>

namespace Vu {

/// Something that can be found by its names.
struct SearchEntry
{
    std::wstring command; ///< The identifier of a command that can be started; empty for a line.
    QString title;
    QString keys; ///< As shown to the user; empty without any.
    QString line; ///< Its name as called, with whatever else the line needs.
    /// The text to put into the command line so that the user can continue; for a command, its line.
    QString fillIn;

    std::vector<SearchText> names; ///< The title first. Any of their letters, in order, match.
    std::vector<SearchText> texts; ///< Keys and help, in which only whole substrings match.
    bool isRecent = false;         ///< A line that was run.
};

/// Everything that can be found: the commands with a title, the lines of the others, and the lines run
/// before. Rebuilt at the start of each search; it doesn't follow changes. Main thread only.
class SearchIndex
{
public:
    SearchIndex() = default;
    explicit SearchIndex(std::vector<SearchEntry> entries) : m_entries(std::move(entries)) {}
    /// Of the program as it is now. `recent` are lines, the newest last.
    static SearchIndex ofProgram(const std::vector<std::wstring>& recent);

    const std::vector<SearchEntry>& entries() const { return m_entries; }
    /// The entries that contain all the words, the best first; among equals, the shorter title. Without
    /// words, all entries in their own order. The pointers are valid as long as the index.
    [[nodiscard]] std::vector<const SearchEntry*> find(const QString& words) const;

private:
    std::vector<SearchEntry> m_entries;
};

} // namespace Vu
