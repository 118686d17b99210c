#include "Server/Base/PythonSignature.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TextCompletion.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace Vs {

namespace {

using Parameter = PythonSignature::Parameter;

/// Those in lower case; no parameter can have such a name.
constexpr std::string_view kPythonWords[] = {
    "and",    "as",   "assert", "async",  "await",  "break",   "class",    "continue",
    "def",    "del",  "elif",   "else",   "except", "finally", "for",      "from",
    "global", "if",   "import", "in",     "is",     "lambda",  "nonlocal", "not",
    "or",     "pass", "raise",  "return", "try",    "while",   "with",     "yield"};

/// The text as a name that Python takes and that isn't in `taken` yet.
std::string identifier(std::string_view text, std::set<std::string>& taken)
{
    std::string name;
    for (const char sign : text)
        name += std::isalnum(static_cast<unsigned char>(sign)) ? static_cast<char>(std::tolower(sign)) : '_';
    if (name.empty() || std::isdigit(static_cast<unsigned char>(name.front())))
        name.insert(0, "p");
    if (std::find(std::begin(kPythonWords), std::end(kPythonWords), name) != std::end(kPythonWords))
        name += '_';
    std::string unique = name;
    for (int number = 2; !taken.insert(unique).second; ++number)
        unique = name + std::to_string(number);
    return unique;
}

/// What a usage says, piece by piece; see TextCommandSubjectArea::Checks.
class UsageReader
{
public:
    explicit UsageReader(std::string_view usage) { read(usage, false); }

    std::vector<Parameter> parameters;
    std::string rest;

private:
    static std::string_view takePiece(std::string_view& text)
    {
        size_t depth = 0, end = 0;
        for (; end < text.size() && (depth > 0 || text[end] != ' '); ++end) {
            if (text[end] == '[' || text[end] == '<')
                ++depth;
            else if ((text[end] == ']' || text[end] == '>') && depth > 0)
                --depth;
            if (end > 0 && text[end - 1] == '>' && (text[end] == '.' || (text[end] == '<' && depth == 1)))
                break;
        }
        const std::string_view piece = text.substr(0, end);
        text.remove_prefix(std::min(text.size(), text.substr(end).starts_with(' ') ? end + 1 : end));
        return piece;
    }

    /// The last one is the first of any number.
    void repeat()
    {
        if (parameters.empty())
            return;
        rest = parameters.back().name;
        parameters.pop_back();
    }

    void read(std::string_view text, bool optional)
    {
        while (!text.empty() && rest.empty()) {
            const std::string_view piece = takePiece(text);
            if (piece.empty() || piece.front() == '/')
                continue;
            if (piece.starts_with("...")) {
                repeat();
            } else if (piece.front() == '[') {
                readOptional(piece.substr(1, piece.find_last_of(']') - 1), piece.ends_with("..."));
            } else if (piece.front() == '<') {
                parameters.push_back({.name = identifier(piece.substr(1, piece.find('>') - 1), m_taken),
                                      .optional = optional});
            } else if (piece.find('|') != piece.npos) {
                parameters.push_back({.name = identifier("choice", m_taken), .optional = optional});
            } else {
                return;
            }
        }
    }

    void readOptional(std::string_view inner, bool repeated)
    {
        // Choices that take words themselves may be any number of words.
        if (inner.find('|') != inner.npos && inner.find('<') != inner.npos)
            rest = identifier("more", m_taken);
        else if (inner.starts_with("= <"))
            rest = identifier(inner.substr(3, inner.find('>') - 3), m_taken);
        else
            read(inner, true);
        if (repeated)
            repeat();
    }

    std::set<std::string> m_taken;
};

bool saysAll(const TextCommand& command)
{
    for (const TextCommandSubjectArea* area : TextCommandMgr::get()->areas())
        if (area->name() == command.area())
            return area->checks() == TextCommandSubjectArea::Checks::Everything;
    return false;
}

std::map<std::wstring, std::string>& usages()
{
    static std::map<std::wstring, std::string> all;
    return all;
}

std::string usageOf(const TextCommand& command)
{
    const auto told = usages().find(command.area() + L'.' + command.name());
    return told != usages().end() ? told->second : Strings::narrow(command.usage());
}

} // namespace

void PythonSignature::usage(const std::wstring& line, std::string usage)
{
    usages().insert_or_assign(line, std::move(usage));
}

PythonSignature::PythonSignature(const TextCommand& command)
{
    const std::string help = usageOf(command);
    for (const std::wstring& flag : TextCompletion::flagsOf(command.usage()))
        flags.push_back(Strings::narrow(flag.substr(1)));
    if (command.format().empty()) {
        UsageReader usage(help);
        parameters = std::move(usage.parameters);
        rest = std::move(usage.rest);
        if (parameters.empty() && rest.empty() && !saysAll(command))
            rest = "parameters";
        for (size_t i = 1; i < parameters.size(); ++i)
            parameters[i].optional = parameters[i].optional || parameters[i - 1].optional;
        return;
    }
    const std::vector<TextFormat::Type> types = TextFormat(command.format()).types();
    UsageReader whole(help);
    const bool told = usages().contains(command.area() + L'.' + command.name());
    if (told || !whole.rest.empty() || whole.parameters.size() >= types.size()) {
        parameters = std::move(whole.parameters);
        rest = std::move(whole.rest);
        for (size_t i = 0; i < parameters.size(); ++i) {
            parameters[i].type = i < types.size() ? types[i] : TextFormat::Type::Text;
            parameters[i].optional |= i > 0 && parameters[i - 1].optional;
        }
        return;
    }
    UsageReader usage(Strings::narrow(TextCompletion::placeholders(command)));
    const bool known = usage.rest.empty() && usage.parameters.size() == types.size();
    for (size_t i = 0; i < types.size(); ++i) {
        const bool optional =
            known ? usage.parameters[i].optional || (i > 0 && parameters.back().optional) : true;
        parameters.push_back(
            {known ? usage.parameters[i].name : "p" + std::to_string(i + 1), types[i], optional});
    }
}

std::string PythonSignature::text() const
{
    std::string text;
    const auto add = [&](const std::string& piece) { text += (text.empty() ? "" : ", ") + piece; };
    for (const Parameter& parameter : parameters)
        add(parameter.name + (parameter.optional ? "=None" : ""));
    if (!parameters.empty())
        add("/");
    if (!rest.empty())
        add('*' + rest);
    else if (!flags.empty())
        add("*");
    for (const std::string& flag : flags)
        add(flag + "=False");
    return '(' + text + ')';
}

} // namespace Vs
