#pragma once

#include <pybind11/pybind11.h>
#include <string>

namespace Vs::Python {

/// Why a script ended.
struct ScriptEnd
{
    bool failed = true;    ///< False for sys.exit() and sys.exit(0).
    int code = 1;          ///< The number that it gave to sys.exit, else 1; 0 if it did not fail.
    std::wstring message;  ///< `FILE:LINE: last line of the traceback`.
    std::string traceback; ///< As Python prints it, without its last line; empty where it would say nothing.
};

/// Reads the exception that left the script `file`. The line is the innermost one in the script itself, if
/// the traceback passes through it, since that is the one its author can fix.
ScriptEnd scriptEnd(pybind11::error_already_set& error, const std::string& file);

} // namespace Vs::Python
