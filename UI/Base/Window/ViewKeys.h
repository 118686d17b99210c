#pragma once

class QKeyEvent;

namespace Vu {

/// Turns the active view by an arrow, moves it by Shift and an arrow, and zooms it by plus and minus. False
/// if the key is none of them, or there is no view.
bool moveViewByKey(const QKeyEvent& event);

} // namespace Vu
