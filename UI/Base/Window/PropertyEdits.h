#pragma once

#include <string>

/// Changes that the properties panel makes to the selection: each is one run of a command, so it is recorded
/// and is one undo step. All run after the present event.
namespace Vu::PropertyEdits {

void rename(const std::wstring& name);
/// A value of a ColourCommandInput; "" removes their own colour.
void colour(const std::wstring& code);
/// The colour shared by the whole selection; "" if they have none of their own, or differ.
[[nodiscard]] std::wstring presentColour();
/// Moves by so many mm along an axis: 0 for x, 1 for y, 2 for z.
void move(int axis, double distance);

} // namespace Vu::PropertyEdits
