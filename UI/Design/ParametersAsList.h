#pragma once

#include "Server/Base/TextCommand.h"

#include <string>

namespace Vu::Design {

/// All parameters of a line as one argument of a command that takes a list: one per line; empty if there are
/// none.
[[nodiscard]] inline std::wstring parametersAsList(const Vs::TextCommandParameters& parameters)
{
    std::wstring list;
    for (unsigned i = 0; i < parameters.parameters(); ++i)
        list += (i > 0 ? L"\n" : L"") + parameters[i];
    return list;
}

} // namespace Vu::Design
