#include "Server/Base/TextCompletion.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Private/TextLine.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <map>

namespace Vs {

namespace fs = boost::filesystem;

namespace {

constexpr size_t kMostFiles = 500; ///< More than that helps nobody to choose.

using boost::algorithm::istarts_with;

std::map<std::wstring, std::function<std::vector<std::wstring>()>>& firstParameters()
{
    // Never destroyed: statics of many libraries register here.
    static auto* const all = new std::map<std::wstring, std::function<std::vector<std::wstring>()>>;
    return *all;
}

/// What each area and command would add, areas for transcripts last.
std::vector<std::wstring> commandNames(const TextCommandMgr& manager, std::wstring_view prefix)
{
    std::set<std::pair<bool, std::wstring>> found;
    const bool inArea = prefix.find(L'.') != std::wstring_view::npos;
    for (const TextCommandSubjectArea* area : manager.areas()) {
        if (!inArea && istarts_with(area->name(), prefix))
            found.emplace(area->forTranscripts(), area->name() + L'.');
        if (!inArea)
            continue;
        for (const TextCommand* command : manager.commands(area->name())) {
            const std::wstring name = area->name() + L'.' + command->name();
            if (command->visible() && istarts_with(name, prefix))
                found.emplace(area->forTranscripts(), name);
        }
    }
    std::vector<std::wstring> names;
    for (const auto& [late, name] : found)
        names.push_back(name);
    return names;
}

std::vector<std::wstring> fileNames(const std::wstring& prefix)
{
    const fs::path typed(prefix);
    const bool folderOnly = prefix.empty() || prefix.back() == L'/';
    const fs::path folder = folderOnly ? typed : typed.parent_path();
    const std::wstring start = folderOnly ? std::wstring() : typed.filename().wstring();
    std::vector<std::wstring> names;
    boost::system::error_code error;
    for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error), end;
         !error && entry != end && names.size() < kMostFiles; entry.increment(error)) {
        const std::wstring name = entry->path().filename().wstring();
        if (!name.starts_with(start) || (start.empty() && name.front() == L'.'))
            continue;
        boost::system::error_code ignored;
        std::wstring whole = (folder / name).wstring();
        if (fs::is_directory(entry->path(), ignored))
            whole += L'/';
        names.push_back(Strings::quote(whole));
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool takesFiles(const std::wstring& placeholders)
{
    return placeholders.find(L"file") != std::wstring::npos ||
           placeholders.find(L"path") != std::wstring::npos;
}

/// The last word of the text, as written and without its quotes.
struct LastWord
{
    std::wstring raw;
    std::wstring text;
    size_t before = 0; ///< How many words precede it.
};

LastWord lastWord(std::wstring_view line)
{
    LastWord last;
    size_t start = 0;
    bool inQuotes = false, inWord = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const wchar_t character = line[i];
        if (!inQuotes && TextLine::isBlank(character)) {
            last.before += inWord ? 1 : 0;
            inWord = false;
            start = i + 1;
            last.text.clear();
            continue;
        }
        inWord = true;
        if (inQuotes && character == L'\\' && i + 1 < line.size())
            last.text.push_back(line[++i]);
        else if (character == L'"')
            inQuotes = !inQuotes;
        else
            last.text.push_back(character);
    }
    last.raw = line.substr(start);
    return last;
}

} // namespace

std::set<std::wstring> TextCompletion::flagsOf(const std::wstring& help)
{
    std::set<std::wstring> flags;
    for (size_t at = help.find(L'/'); at != std::wstring::npos; at = help.find(L'/', at + 1)) {
        const bool begins = at == 0 || help[at - 1] == L'[' || TextLine::isBlank(help[at - 1]);
        const size_t end = help.find_first_not_of(
            L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_", at + 1);
        const std::wstring flag = help.substr(at, end - at);
        if (begins && flag.size() > 1)
            flags.insert(flag);
    }
    return flags;
}

std::vector<std::wstring> TextCompletion::complete(std::wstring_view line, size_t cursor)
{
    const TextCommandMgr& manager = *TextCommandMgr::get();
    line = line.substr(0, std::min(cursor, line.size()));
    const LastWord word = lastWord(line);
    if (word.before == 0)
        return commandNames(manager, word.text);

    TextLine words(line);
    words.skipBlanks();
    const std::wstring_view name = words.plainWord();
    if (name == L"help" || name == L"?")
        return word.before == 1 ? commandNames(manager, word.text) : std::vector<std::wstring>();
    const size_t dot = name.find(L'.');
    const TextCommand* command =
        dot == std::wstring_view::npos ? nullptr : manager.find(name.substr(0, dot), name.substr(dot + 1));
    if (!command)
        return {};
    std::vector<std::wstring> candidates;
    if (word.raw.starts_with(L'/'))
        for (const std::wstring& flag : flagsOf(command->usage()))
            if (istarts_with(flag, word.raw))
                candidates.push_back(flag);
    if (const auto names = firstParameters().find(std::wstring(name));
        names != firstParameters().end() && word.before == 1) {
        for (std::wstring& each : names->second())
            if (istarts_with(each, word.text))
                candidates.push_back(std::move(each));
        std::ranges::sort(candidates);
    }
    if (takesFiles(placeholders(*command)) || word.text.find(L'/') != std::wstring::npos)
        for (std::wstring& file : fileNames(word.text))
            candidates.push_back(std::move(file));
    return candidates;
}

void TextCompletion::firstParameter(const std::wstring& command,
                                    std::function<std::vector<std::wstring>()> names)
{
    firstParameters().insert_or_assign(command, std::move(names));
}

size_t TextCompletion::wordStart(std::wstring_view line, size_t cursor)
{
    line = line.substr(0, std::min(cursor, line.size()));
    return line.size() - lastWord(line).raw.size();
}

std::wstring TextCompletion::placeholders(const TextCommand& command)
{
    // Some texts put it at the end, as "Usage: Area.Name <filename>".
    const std::wstring whole = command.usage();
    std::wstring_view help = whole;
    const std::wstring usage = L"Usage: " + command.area() + L'.' + command.name();
    if (const size_t at = help.find(usage); at != std::wstring_view::npos)
        help.remove_prefix(at + usage.size());
    std::wstring found;
    size_t at = 0;
    while (true) {
        while (at < help.size() && TextLine::isBlank(help[at]) && help[at] != L'\n')
            ++at;
        size_t end = std::wstring_view::npos;
        if (at < help.size() && (help[at] == L'<' || help[at] == L'['))
            end = help.find(help[at] == L'<' ? L'>' : L']', at);
        else if (at < help.size() && help[at] == L'/')
            end = std::min(help.find(L' ', at), help.size()) - 1;
        if (end == std::wstring_view::npos)
            return found;
        found += (found.empty() ? L"" : L" ") + std::wstring(help.substr(at, end + 1 - at));
        at = end + 1;
    }
}

} // namespace Vs
