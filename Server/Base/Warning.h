#pragma once

#include <functional>
#include <string>

namespace Vs {

/// Tells the user of something that went wrong without stopping what was asked for: a settings file that
/// cannot be read, say. Goes to the newest WarningHandler, or to standard error where there is none. Any
/// thread.
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
