#include "Server/Base/Private/Catalogue.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/locale/gnu_gettext.hpp>

#include <iterator>
#include <locale>
#include <vector>

namespace Vs {

namespace fs = boost::filesystem;

namespace {

/// The content of a catalogue; empty if there is no such file. Throws Vs::Exception.
std::vector<char> readCatalogue(const std::string& file)
{
    fs::ifstream stream(file, std::ios::binary);
    boost::system::error_code error;
    if (!stream && !fs::exists(file, error))
        return {};
    std::vector<char> content(std::istreambuf_iterator<char>(stream), {});
    // A complete catalogue ends with the end of its last text. The reader searches for the ends of texts, so
    // a truncated catalogue must not reach it.
    if (content.empty() || content.back() != '\0')
        throw Exception(stream ? "it is cut short" : "it cannot be opened");
    return content;
}

/// One domain's catalogue in one language.
///
/// Boost.Locale reads it, and not the C library's gettext: that one takes its language from the process's
/// locale and environment, which other threads may read while we write them, and it never checks whether a
/// table lies within the file, so a damaged catalogue would crash the program. Here no global state is
/// touched, and such damage is an exception.
class GettextCatalogue : public Catalogue
{
public:
    GettextCatalogue(const fs::path& folder, const std::string& language, const std::string& domain)
        : m_file(folder / language / "LC_MESSAGES" / (domain + ".mo"))
    {
        guarded([&] {
            boost::locale::gnu_gettext::messages_info info;
            info.language = language;
            info.encoding = "UTF-8";
            info.callback = [](const std::string& file, const std::string&) { return readCatalogue(file); };
            info.domains.emplace_back(domain);
            info.paths.push_back(folder.string());
            m_messages = std::locale(std::locale::classic(),
                                     boost::locale::gnu_gettext::create_messages_facet<char>(info));
        });
    }

    const char* find(const char* context, const char* text) override
    {
        const char* found = nullptr;
        if (std::has_facet<Messages>(m_messages))
            guarded([&] { found = std::use_facet<Messages>(m_messages).get(0, context, text); });
        return found;
    }

private:
    using Messages = boost::locale::message_format<char>;

    /// A damaged catalogue is reported once and has no translations from then on. The damage may not show
    /// before a later text.
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

} // namespace

} // namespace Vs

Vs::Catalogue* vsOpenCatalogue(const boost::filesystem::path& folder, const std::string& language,
                               const std::string& domain)
{
    return new Vs::GettextCatalogue(folder, language, domain);
}
