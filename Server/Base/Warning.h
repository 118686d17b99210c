#pragma once

#include <functional>
#include <string>

namespace Vs {

/// Informs the user of a problem that doesn't stop what was asked for, such as a settings file that cannot be
/// read. Goes to the newest WarningHandler, or to standard error where there is none. Any thread.
void warn(const std::wstring& message);

/// Shows the warnings for as long as it exists, in place of the handler before it, which takes over again
/// afterwards. Handlers may go in any order. Main thread; the function is called on the thread that warns.
class WarningHandler
{
public:
    explicit WarningHandler(std::function<void(const std::wstring&)> function);
    ~WarningHandler();

    WarningHandler(const WarningHandler&) = delete;
    WarningHandler& operator=(const WarningHandler&) = delete;
};

} // namespace Vs
