#include "UI/Base/Window/SearchIndex.h"

#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TextCompletion.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandTitles.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Base/Window/KeyTable.h"
#include "UI/Base/Workspace/MenuBar.h"

#include <QStringList>

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace Vu {
namespace {

/// Subtracted from the score of a word that isn't in the title, so that title matches come first.
constexpr int kOtherName = 10;
constexpr int kInText = 20;
/// How many of the lines run before come first while nothing is typed.
constexpr size_t kRecentAtFirst = 5;

using OtherTitles = std::multimap<std::wstring, QString>;

void collectMenuTitles(const std::vector<ToolbarItem>& items, OtherTitles& titles)
{
    for (const ToolbarItem& item : items) {
        collectMenuTitles(item.menu, titles);
        if (!item.isMenu() && !item.title.empty())
            for (const std::wstring& command : {item.command, item.off})
                titles.emplace(command, QString::fromStdWString(item.title).remove(QLatin1Char('&')));
    }
}

OtherTitles otherTitles()
{
    OtherTitles titles;
    for (const CommandTitles::Title& title : CommandTitles::inAllLanguages())
        titles.emplace(title.command, QString::fromStdWString(title.text));
    collectMenuTitles(MenuBar::get()->menus(), titles);
    return titles;
}

QString nameOf(const Vs::TextCommand& command)
{
    return QString::fromStdWString(command.area() + L'.' + command.name());
}

void addNames(SearchEntry& entry, QStringList names)
{
    names.prepend(entry.title);
    names.removeDuplicates();
    for (const QString& name : names)
        entry.names.emplace_back(name);
}

void addTexts(SearchEntry& entry, const QStringList& texts)
{
    for (const QString& text : texts)
        if (!text.isEmpty())
            entry.texts.emplace_back(text);
}

SearchEntry entryOf(const CommandDefinition& definition, const OtherTitles& otherTitles)
{
    const auto* line = TranscriptedCommandTextCommand::of(definition.id());
    const QString id = QString::fromStdWString(definition.id());
    SearchEntry entry;
    entry.command = definition.id();
    entry.title = QString::fromStdWString(definition.info()->name());
    entry.keys = KeyTable::get()->shown(definition);
    entry.line = line ? nameOf(*line) : QStringLiteral("Commands.Start ") + id;
    entry.fillIn = entry.line;
    QStringList names{id};
    if (line)
        names << entry.line;
    const auto [first, last] = otherTitles.equal_range(definition.id());
    for (auto title = first; title != last; ++title)
        names << title->second;
    addNames(entry, names);
    addTexts(entry, {KeyTable::toText(KeyTable::get()->keysOf(definition), QKeySequence::NativeText),
                     QString::fromStdWString(definition.info()->tooltip().description()),
                     line ? QString::fromStdWString(line->help()) : QString()});
    return entry;
}

SearchEntry entryOf(const Vs::TextCommand& command)
{
    SearchEntry entry;
    entry.title = nameOf(command);
    entry.fillIn = entry.title + QLatin1Char(' ');
    entry.line = entry.fillIn + QString::fromStdWString(Vs::TextCompletion::placeholders(command));
    addNames(entry, {});
    addTexts(entry, {QString::fromStdWString(command.help())});
    return entry;
}

SearchEntry entryOf(const std::wstring& recentLine)
{
    SearchEntry entry;
    entry.title = entry.line = entry.fillIn = QString::fromStdWString(recentLine);
    entry.isRecent = true;
    addNames(entry, {});
    return entry;
}

void addCommands(std::vector<SearchEntry>& entries)
{
    const OtherTitles others = otherTitles();
    const size_t before = entries.size();
    for (const CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions())
        if (!definition->info()->name().empty())
            entries.push_back(entryOf(*definition, others));
    std::sort(entries.begin() + static_cast<std::ptrdiff_t>(before), entries.end(),
              [](const SearchEntry& one, const SearchEntry& other) {
                  return QString::localeAwareCompare(one.title, other.title) < 0;
              });
}

/// Those that don't belong to a command above; lines for transcripts come last.
void addLines(std::vector<SearchEntry>& entries)
{
    std::set<QString> known;
    for (const SearchEntry& entry : entries)
        if (!entry.isRecent)
            known.insert(entry.line);
    std::vector<SearchEntry> late;
    for (const Vs::TextCommandSubjectArea* area : Vs::TextCommandMgr::get()->areas())
        for (const Vs::TextCommand* command : Vs::TextCommandMgr::get()->commands(area->name()))
            if (command->visible() && !known.contains(nameOf(*command)))
                (area->forTranscripts() ? late : entries).push_back(entryOf(*command));
    std::move(late.begin(), late.end(), std::back_inserter(entries));
}

std::optional<int> scoreOf(const SearchEntry& entry, const std::u16string& word)
{
    std::optional<int> best;
    const auto offer = [&](std::optional<int> score, int less) {
        if (score)
            best = std::max(best.value_or(*score - less), *score - less);
    };
    for (size_t i = 0; i < entry.names.size(); ++i)
        offer(FuzzyMatch::score(entry.names[i], word), i == 0 && !entry.isRecent ? 0 : kOtherName);
    for (const SearchText& text : entry.texts)
        offer(FuzzyMatch::scoreInOnePiece(text, word), kInText);
    return best;
}

std::optional<int> scoreOf(const SearchEntry& entry, const std::vector<std::u16string>& words)
{
    int sum = 0;
    for (const std::u16string& word : words) {
        const std::optional<int> score = scoreOf(entry, word);
        if (!score)
            return std::nullopt;
        sum += *score;
    }
    return sum;
}

} // namespace

SearchIndex SearchIndex::ofProgram(const std::vector<std::wstring>& recent)
{
    std::vector<SearchEntry> entries;
    const size_t first = std::min(kRecentAtFirst, recent.size());
    for (size_t i = 0; i < first; ++i)
        entries.push_back(entryOf(recent[recent.size() - 1 - i]));
    addCommands(entries);
    addLines(entries);
    for (size_t i = first; i < recent.size(); ++i)
        entries.push_back(entryOf(recent[recent.size() - 1 - i]));
    return SearchIndex(std::move(entries));
}

std::vector<const SearchEntry*> SearchIndex::find(const QString& text) const
{
    std::vector<std::u16string> words;
    for (const QString& word : text.left(SearchText::kLongest).simplified().split(u' ', Qt::SkipEmptyParts))
        words.push_back(SearchText(word).letters());
    std::vector<std::pair<int, const SearchEntry*>> found;
    for (const SearchEntry& entry : m_entries)
        if (const std::optional<int> score = scoreOf(entry, words))
            found.emplace_back(*score, &entry);
    if (!words.empty())
        std::ranges::stable_sort(found, [](const auto& one, const auto& other) {
            return one.first != other.first ? one.first > other.first
                                            : one.second->title.size() < other.second->title.size();
        });
    std::vector<const SearchEntry*> entries;
    for (const auto& [score, entry] : found)
        entries.push_back(entry);
    return entries;
}

} // namespace Vu
