#pragma once

#include <functional>
#include <string>

namespace Vs::OS {

/// Opens a file or a web address with the program that the desktop has for it. The text is handed over as it
/// is, never through a shell. Returns false if it is empty, looks like an option, or cannot be handed over;
/// returns before the other program appears. `failed` is called, on a thread of its own, if it turns out
/// afterwards that no program took it.
[[nodiscard]] bool platformShellOpen(const std::wstring& target, std::function<void()> failed = {});

/// Has the desktop's mail program start a message with a file attached, which must exist until the person has
/// sent it. Otherwise like platformShellOpen.
[[nodiscard]] bool platformEmail(const std::wstring& subject, const std::wstring& attachment,
                                 std::function<void()> failed = {});

/// Replaces what platformEmail runs, "xdg-email"; like the next one.
void emailProgram(const std::string& program);
/// Replaces what platformShellOpen runs, "xdg-open"; for desktops that use another program, and for tests.
void shellOpenProgram(const std::string& program);

} // namespace Vs::OS
