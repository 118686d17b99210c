#pragma once

#include <functional>
#include <string>

namespace Vs {

/// Tells the user of something that went wrong without stopping what was asked for: a settings file that
/// cannot be read, say. Goes to standard error until somebody takes over. Any thread.
void warn(const std::wstring& message);

/// Who shows the warnings from now on; an empty function gives them back to standard error. Main thread.
void warningHandler(std::function<void(const std::wstring&)> handler);

} // namespace Vs
