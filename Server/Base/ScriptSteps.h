#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace Vs {

class Status;

/// Follows a script statement by statement. Either may be missing.
struct ScriptSteps
{
    std::function<void(const std::wstring& source)> before;
    /// Called with the statement's first line and with what went wrong. Returns whether to run the next one.
    std::function<bool(size_t line, const Status& failure)> after;
};

} // namespace Vs
