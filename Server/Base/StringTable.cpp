#include "Server/Base/StringTable.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Private/Catalogue.h"
#include "Server/Base/Require.h"
#include "Server/Base/SiblingLibrary.h"
#include "Server/Base/Strings.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>

namespace Vs::StringTable {

namespace fs = boost::filesystem;

namespace {

constexpr const char* kEnglish = "en";

fs::path catalogueFolder(const std::string& language)
{
    return PathInfo::rootDirectory() / "Localization" / language / "LC_MESSAGES";
}

/// The language of "de_DE.UTF-8@euro": "de_DE" if there are catalogues of that, or else "de"; empty if none.
std::string knownLanguage(std::string_view locale)
{
    const std::string whole(locale.substr(0, locale.find_first_of(".@")));
    const std::string language = whole.substr(0, whole.find('_'));
    // The text comes from outside and becomes part of a path.
    if (whole.empty() || whole.find_first_of("/.\\") != std::string::npos)
        return {};
    if (language == kEnglish || language == "C" || language == "POSIX")
        return kEnglish;
    boost::system::error_code error;
    for (const std::string& candidate : {whole, language})
        if (fs::is_directory(catalogueFolder(candidate), error))
            return candidate;
    return {};
}

std::string environmentLanguage()
{
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string_view(value ? value : "");
    };
    std::string_view locale = variable("LC_ALL");
    for (const char* name : {"LC_MESSAGES", "LANG"})
        if (locale.empty())
            locale = variable(name);
    // The list of preferred languages counts for everybody except those who want no language at all.
    if (!locale.empty() && locale != "C" && locale != "POSIX")
        for (std::string_view list = variable("LANGUAGE"); !list.empty();) {
            const size_t colon = std::min(list.find(':'), list.size());
            if (std::string known = knownLanguage(list.substr(0, colon)); !known.empty())
                return known;
            list.remove_prefix(std::min(colon + 1, list.size()));
        }
    std::string known = knownLanguage(locale);
    return known.empty() ? kEnglish : known;
}

Catalogue* openCatalogue(const std::string& language, const std::string& domain)
{
    static const auto open =
        SiblingLibrary("libVsCatalogue10.so").function<decltype(&vsOpenCatalogue)>("vsOpenCatalogue");
    return open(PathInfo::rootDirectory() / "Localization", language, domain);
}

struct Table
{
    std::string language = environmentLanguage();
    std::map<std::wstring, std::unique_ptr<Catalogue>, std::less<>>
        catalogues; ///< By domain, of this language.

    Catalogue& catalogue(std::wstring_view domain)
    {
        const auto found = catalogues.find(domain);
        if (found != catalogues.end())
            return *found->second;
        std::unique_ptr<Catalogue> opened(openCatalogue(language, Strings::narrow(domain)));
        return *catalogues.emplace(domain, std::move(opened)).first->second;
    }
};

Table& table()
{
    static Table& table = *new Table;
    return table;
}

} // namespace

std::wstring getLocalizedString(std::wstring_view domain, const char* key, const char* defaultText)
{
    assertMainThread();
    require(key != nullptr && defaultText != nullptr, "a text has a key and a default");
    Table& all = table();
    // English needs no catalogue: its texts are in the code.
    if (all.language != kEnglish)
        if (const char* text = all.catalogue(domain).find(key, defaultText); text && *text)
            return Strings::widen(text);
    return Strings::widen(defaultText);
}

void language(std::string_view code)
{
    assertMainThread();
    const std::string known = knownLanguage(code);
    table().language = known.empty() ? kEnglish : known;
    table().catalogues.clear();
}

const std::string& language()
{
    return table().language;
}

std::vector<std::string> languages()
{
    std::vector<std::string> found{kEnglish};
    boost::system::error_code error;
    for (fs::directory_iterator entry(PathInfo::rootDirectory() / "Localization", error), end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name != kEnglish && fs::is_directory(catalogueFolder(name)))
            found.push_back(name);
    }
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace Vs::StringTable
