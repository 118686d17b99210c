#include "UI/Base/Command/CommandTitles.h"

#include "Server/Base/StringTable.h"

#include <map>

namespace Vu {
namespace {

struct Source
{
    std::wstring domain;
    std::string key, english;
};

std::map<std::wstring, Source>& sources()
{
    // Never destroyed: records of commands are made by statics of many libraries.
    static auto* const all = new std::map<std::wstring, Source>;
    return *all;
}

} // namespace

std::wstring CommandTitles::localized(const std::wstring& command, const wchar_t* domain, const char* key,
                                      const char* english)
{
    sources().insert_or_assign(command, Source{domain, key, english});
    return Vs::StringTable::getLocalizedString(domain, key, english);
}

std::vector<CommandTitles::Title> CommandTitles::inAllLanguages()
{
    std::vector<Title> titles;
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the table's own changes below.
    const std::string shown = Vs::StringTable::language();
    for (const std::string& language : Vs::StringTable::languages()) {
        Vs::StringTable::language(language);
        for (const auto& [command, source] : sources())
            titles.push_back({command, Vs::StringTable::getLocalizedString(source.domain, source.key.c_str(),
                                                                           source.english.c_str())});
    }
    Vs::StringTable::language(shown);
    return titles;
}

} // namespace Vu
