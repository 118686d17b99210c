#pragma once

class QKeyEvent;

namespace Vu {

/// An arrow turns the active view, Shift and an arrow move it, plus and minus zoom it. False if the key is
/// none of these, or there is no view.
bool moveViewByKey(const QKeyEvent& event);

} // namespace Vu
