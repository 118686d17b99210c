#pragma once

#include <string>

/// What the properties panel changes of the selected things: each is one run of a command, so that it is
/// recorded, and one step of undo. All run behind the present event.
namespace Vu::PropertyEdits {

void rename(const std::wstring& name);
/// A value of a ColourCommandInput; "" takes their own from them.
void colour(const std::wstring& code);
/// What all that is selected has; "" for none of their own, and where several differ.
[[nodiscard]] std::wstring presentColour();
/// By so many mm along an axis: 0 for x, 1 for y, 2 for z.
void move(int axis, double distance);

} // namespace Vu::PropertyEdits
