#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace Vs {

class Status;

/// Who follows a script statement by statement. Either may be missing.
struct ScriptSteps
{
    std::function<void(const std::wstring& source)> before;
    /// With the line at which the statement begins and with what went wrong.
    /// Returns whether the next one is to run.
    std::function<bool(size_t line, const Status& failure)> after;
};

} // namespace Vs
