#pragma once

#include "Server/Body/BodyMesh.h"

#include <optional>
#include <string>

/// What the properties panel changes of the selected things: each is one run of a command, so that it is
/// recorded, and one step of undo. All run behind the present event.
namespace Vu::PropertyEdits {

void rename(const std::wstring& name);
/// No colour takes their own from them.
void colour(const std::optional<Vs::Colour>& colour);
/// By so many mm along an axis: 0 for x, 1 for y, 2 for z.
void move(int axis, double distance);

/// The colour as red, green and blue of the screen: "#2f86e0".
[[nodiscard]] std::wstring colourCode(const Vs::Colour& colour);
/// Nothing for another text.
[[nodiscard]] std::optional<Vs::Colour> colourOf(const std::wstring& code);

} // namespace Vu::PropertyEdits
