#pragma once

#include <functional>

class QMenu;

namespace Vu {

class MenuControl;

/// Fills the menu with the control's current items. It stays open while the user checks them, until a click
/// elsewhere or Escape closes it. `control` returns the control as long as it exists, else null.
void fillWithTicks(QMenu* menu, const std::function<MenuControl*()>& control);

} // namespace Vu
