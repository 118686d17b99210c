#pragma once

#include "Server/Base/TextFormat.h"

#include <string>
#include <vector>

namespace Vs {

class TextCommand;

/// What the Python function of a text command takes, with names from its help text.
struct PythonSignature
{
    struct Parameter
    {
        std::string name;
        TextFormat::Type type = TextFormat::Type::Text;
        bool optional = false;
    };

    explicit PythonSignature(const TextCommand& command);

    /// As Python's help and inspect show it: "(dx, dy, dz, x_y_z=None, direction=None, /)".
    [[nodiscard]] std::string text() const;

    std::vector<Parameter> parameters; ///< By their places alone.
    std::string rest;                  ///< The name of any number of further ones; empty if there are none.
    std::vector<std::string> flags;    ///< By their names alone.
};

} // namespace Vs
