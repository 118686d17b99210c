#pragma once

#include <string>
#include <string_view>

/// Texts that nothing written may keep: passwords and tokens that appear in lines, because scripts sign in as
/// well. Known until the program ends. Main thread only.
namespace Vs::TranscriptSecrets {

/// From now on `${name}` replaces the text wherever it is a whole word, or a whole value after `=`, so a
/// recording can be played with the secret given from outside. An empty text is not a secret.
void keep(std::wstring_view name, std::wstring_view text);

/// Registers the value of a parameter that is given from outside, if its name ends in "TOKEN", "SECRET",
/// "PASSWORD", "HANDLE" or "KEY".
void keepIfNamedSo(std::wstring_view name, std::wstring_view text);

/// The line as it may be kept. `line` is one whose own `${` are escaped (escapeParameters), or one that
/// nobody fills in.
[[nodiscard]] std::wstring hidden(std::wstring line);
/// The same for a statement of Python, which asks for the parameter: `quillet.parameters["name"]`.
[[nodiscard]] std::wstring hiddenInPython(std::wstring statement);

} // namespace Vs::TranscriptSecrets
