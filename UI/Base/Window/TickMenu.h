#pragma once

#include <functional>

class QMenu;

namespace Vu {

class MenuControl;

/// Fills the menu with the control's items as they are now. It stays open while a person ticks them, until a
/// click elsewhere or Escape closes it. `control` gives the control for as long as it is there, else null.
void fillWithTicks(QMenu* menu, const std::function<MenuControl*()>& control);

} // namespace Vu
