#include "Server/Base/StringTable.h"

#include "Server/Base/Exception.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/locale/gnu_gettext.hpp>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <locale>
#include <map>

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
    // The list of preferred languages counts for everybody but those who want no language at all.
    if (!locale.empty() && locale != "C" && locale != "POSIX")
        for (std::string_view list = variable("LANGUAGE"); !list.empty();) {
            const size_t colon = std::min(list.find(':'), list.size());
            if (const std::string known = knownLanguage(list.substr(0, colon)); !known.empty())
                return known;
            list.remove_prefix(std::min(colon + 1, list.size()));
        }
    const std::string known = knownLanguage(locale);
    return known.empty() ? kEnglish : known;
}

/// The content of a catalogue; empty if there is no such file. Throws Vs::Exception.
std::vector<char> readCatalogue(const std::string& file)
{
    fs::ifstream stream(file, std::ios::binary);
    boost::system::error_code error;
    if (!stream && !fs::exists(file, error))
        return {};
    std::vector<char> content(std::istreambuf_iterator<char>(stream), {});
    // A whole catalogue ends with the end of its last text. The reader looks for the ends of texts, so that
    // one that is cut short must not get there.
    if (content.empty() || content.back() != '\0')
        throw Exception(stream ? "it is cut short" : "it cannot be opened");
    return content;
}

/// One domain's catalogue in one language.
///
/// Boost.Locale reads it, and not the C library's gettext: that one takes its language from the process's
/// locale and environment, which other threads read while we would write them, and it never looks whether a
/// table lies within the file, so that a damaged catalogue ends the program. Here no global state is touched,
/// and such damage is an exception.
class Catalogue
{
public:
    Catalogue(const std::string& language, const std::string& domain)
        : m_file(catalogueFolder(language) / (domain + ".mo"))
    {
        guarded([&] {
            boost::locale::gnu_gettext::messages_info info;
            info.language = language;
            info.encoding = "UTF-8";
            info.callback = [](const std::string& file, const std::string&) { return readCatalogue(file); };
            info.domains.emplace_back(domain);
            info.paths.push_back((PathInfo::rootDirectory() / "Localization").string());
            m_messages = std::locale(std::locale::classic(),
                                     boost::locale::gnu_gettext::create_messages_facet<char>(info));
        });
    }

    /// Null if there is no translation. The text is the catalogue's.
    const char* find(const char* context, const char* text)
    {
        const char* found = nullptr;
        if (std::has_facet<Messages>(m_messages))
            guarded([&] { found = std::use_facet<Messages>(m_messages).get(0, context, text); });
        return found;
    }

private:
    using Messages = boost::locale::message_format<char>;

    /// A damaged catalogue is told of once, and from then on has no translations. Damage may show at a later
    /// text than the first.
    template <class Action>
    void guarded(Action action)
    {
        try {
            action();
        } catch (const std::exception& error) {
            m_messages = std::locale::classic();
            const std::string cause = error.what();
            warn(Strings::widen("The texts in " + m_file.string() + " cannot be read: " + cause + '.'));
        }
    }

    fs::path m_file;
    std::locale m_messages = std::locale::classic(); ///< Holds the catalogue as its facet.
};

struct Table
{
    std::string language = environmentLanguage();
    std::map<std::wstring, Catalogue, std::less<>> catalogues; ///< By domain, of this language.

    Catalogue& catalogue(std::wstring_view domain)
    {
        const auto found = catalogues.find(domain);
        if (found != catalogues.end())
            return found->second;
        return catalogues.try_emplace(std::wstring(domain), language, Strings::narrow(domain)).first->second;
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
    Table& all = table();
    // English needs no catalogue: its texts stand in the code.
    if (all.language != kEnglish)
        if (const char* text = all.catalogue(domain).find(key, defaultText); text && *text)
            return Strings::widen(text);
    return Strings::widen(defaultText);
}

void language(std::string_view code)
{
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
