#pragma once

#include "Server/Base/TextFormat.h"

#include <string>
#include <vector>

namespace Vs {

class TextCommand;

/// The parameters of a text command's Python function, with names from its help text.
struct PythonSignature
{
    struct Parameter
    {
        std::string name;
        TextFormat::Type type = TextFormat::Type::Text;
        bool optional = false;
    };

    explicit PythonSignature(const TextCommand& command);

    /// Names the parameters of a line, "Area.Name", whose help doesn't, in the syntax of a usage: "<type>
    /// [<description>]".
    static void usage(const std::wstring& line, std::string usage);

    /// As Python's help and inspect show it: "(dx, dy, dz, x_y_z=None, direction=None, /)".
    [[nodiscard]] std::string text() const;

    std::vector<Parameter> parameters; ///< Positional only.
    std::string rest;                  ///< The name of any number of further ones; empty if there are none.
    std::vector<std::string> flags;    ///< By keyword only.
};

} // namespace Vs
