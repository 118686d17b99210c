#pragma once

#include "UI/Base/Window/FuzzyMatch.h"

#include <QString>

#include <string>
#include <vector>

namespace Vu {

/// Something that can be found by what it is called.
struct SearchEntry
{
    std::wstring command; ///< The identifier of a command that can be started; empty for a line.
    QString title;
    QString keys; ///< As people read them; empty without any.
    QString line; ///< By which it is called, with what the line needs besides.
    /// What the command line is to hold so that one can go on; of a command, its line.
    QString fillIn;

    std::vector<SearchText> names; ///< The title first. Any letters of them, in order, are enough.
    std::vector<SearchText> texts; ///< Keys and help, in which words are found only in one piece.
    bool isRecent = false;         ///< A line that was run.
};

/// All that can be found: the commands that have a title, the lines of the others, and the lines that were
/// run. Made anew when somebody begins to search; it doesn't follow what changes. Main thread only.
class SearchIndex
{
public:
    SearchIndex() = default;
    explicit SearchIndex(std::vector<SearchEntry> entries) : m_entries(std::move(entries)) {}
    /// Of the program as it is now. `recent` are lines, the newest last.
    static SearchIndex ofProgram(const std::vector<std::wstring>& recent);

    const std::vector<SearchEntry>& entries() const { return m_entries; }
    /// What has all the words, the best first; of those that are equally good, the shorter title. Without any
    /// word all of it, as it stands here. The pointers hold as long as the index.
    [[nodiscard]] std::vector<const SearchEntry*> find(const QString& words) const;

private:
    std::vector<SearchEntry> m_entries;
};

} // namespace Vu
