#include "UI/Application/Stubs.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TextCompletion.h"
#include "Server/Base/TextFormat.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <set>
#include <string_view>
#include <vector>

namespace Quillet {
namespace {

namespace fs = boost::filesystem;

constexpr const char* kHead = R"(from os import PathLike
from typing import Sequence, Union

_Text = Union[str, int, float, PathLike[str], None]
_Point = Union[str, Sequence[float], None]
)";

/// Those in lower case; a parameter cannot be called so.
constexpr std::string_view kPythonWords[] = {
    "and",    "as",   "assert", "async",  "await",  "break",   "class",    "continue",
    "def",    "del",  "elif",   "else",   "except", "finally", "for",      "from",
    "global", "if",   "import", "in",     "is",     "lambda",  "nonlocal", "not",
    "or",     "pass", "raise",  "return", "try",    "while",   "with",     "yield"};

const char* typeName(Vs::TextFormat::Type type)
{
    using Type = Vs::TextFormat::Type;
    switch (type) {
    case Type::Real:
        return "Union[str, float, None]";
    case Type::Integer:
        return "Union[str, int, None]";
    case Type::Vector:
    case Type::Point:
        return "_Point";
    case Type::Text:
        break;
    }
    return "_Text";
}

std::string docstring(const std::wstring& text)
{
    std::string narrow = Vs::Strings::narrow(text);
    boost::replace_all(narrow, "\\", "\\\\");
    boost::replace_all(narrow, "\"", "\\\"");
    return "\"\"\"" + narrow + "\"\"\"";
}

/// A parameter as the help text names it, "<name>" or "[<name>]".
struct Placeholder
{
    std::string name;
    bool optional;
};

std::vector<Placeholder> placeholders(const Vs::TextCommand& command)
{
    const std::string text = Vs::Strings::narrow(Vs::TextCompletion::placeholders(command));
    std::vector<Placeholder> found;
    for (size_t start = text.find('<'); start != std::string::npos; start = text.find('<', start + 1))
        found.push_back(
            {text.substr(start + 1, text.find('>', start) - start - 1), start > 0 && text[start - 1] == '['});
    return found;
}

/// The text as a name that Python takes and that isn't in `taken` yet.
std::string identifier(const std::string& text, std::set<std::string>& taken)
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

std::string parameters(const Vs::TextCommand& command)
{
    if (command.format().empty())
        return "*parameters: _Text";
    const std::vector<Vs::TextFormat::Type> types = Vs::TextFormat(command.format()).types();
    const std::vector<Placeholder> named = placeholders(command);
    const bool known = named.size() == types.size();
    std::set<std::string> taken;
    std::string text;
    bool optional = false;
    for (size_t i = 0; i < types.size(); ++i) {
        optional = optional || !known || named[i].optional;
        text += identifier(known ? named[i].name : "p" + std::to_string(i + 1), taken) + ": " +
                typeName(types[i]) + (optional ? " = ..., " : ", ");
    }
    return text + "/";
}

std::string function(const Vs::TextCommand& command)
{
    const std::set<std::wstring> named = Vs::TextCompletion::flagsOf(command.help());
    std::string signature = parameters(command);
    if (!named.empty() && !command.format().empty())
        signature += ", *";
    for (const std::wstring& flag : named)
        signature += ", " + Vs::Strings::narrow(flag.substr(1)) + ": bool = ...";
    return "\ndef " + Vs::Strings::narrow(command.name()) + '(' + signature + ") -> str:\n    " +
           docstring(command.help()) + '\n';
}

} // namespace

void writeStubs(const std::string& name)
{
    const fs::path folder(name);
    boost::system::error_code error;
    fs::create_directories(folder, error);
    for (const Vs::TextCommandSubjectArea* area : Vs::TextCommandMgr::get()->areas()) {
        const fs::path file = folder / (Vs::Strings::narrow(area->name()) + ".pyi");
        fs::ofstream stream(file);
        stream << docstring(area->description()) << "\n\n" << kHead;
        for (const Vs::TextCommand* command : Vs::TextCommandMgr::get()->commands(area->name()))
            stream << function(*command);
        if (!stream.flush())
            throw Vs::Exception(file.string() + ": The stub cannot be written.");
    }
}

} // namespace Quillet
