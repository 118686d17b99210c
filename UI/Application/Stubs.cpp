#include "UI/Application/Stubs.h"

#include "Server/Base/Exception.h"
#include "Server/Base/PythonSignature.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TextFormat.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

namespace Quillet {
namespace {

namespace fs = boost::filesystem;

constexpr const char* kHead = R"(from os import PathLike
from typing import Sequence, Union

_Text = Union[str, int, float, PathLike[str], Sequence[float], None]
_Point = Union[str, Sequence[float], None]
)";

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

std::string function(const Vs::TextCommand& command)
{
    const Vs::PythonSignature told(command);
    std::string signature;
    const auto add = [&](const std::string& piece) { signature += (signature.empty() ? "" : ", ") + piece; };
    for (const Vs::PythonSignature::Parameter& parameter : told.parameters)
        add(parameter.name + ": " + typeName(parameter.type) + (parameter.optional ? " = ..." : ""));
    if (!told.parameters.empty())
        add("/");
    if (!told.rest.empty())
        add('*' + told.rest + ": _Text");
    else if (!told.flags.empty())
        add("*");
    for (const std::string& flag : told.flags)
        add(flag + ": bool = ...");
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
