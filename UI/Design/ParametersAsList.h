#pragma once

#include "Server/Base/TextCommand.h"
#include "Server/DataModel/Selection/PathQueries.h"

#include <sstream>
#include <string>
#include <vector>

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

/// The paths in such a list; those that name nothing are errors.
[[nodiscard]] inline std::vector<Vs::ObjectPath> pathsOfList(const std::wstring& list, const Vs::Asset& asset,
                                                             Vs::Status& status)
{
    std::vector<Vs::ObjectPath> paths;
    std::wistringstream lines(list);
    for (std::wstring line; std::getline(lines, line);)
        if (const auto path = Vs::findPath(asset, line, status))
            paths.push_back(*path);
    return paths;
}

} // namespace Vu::Design
