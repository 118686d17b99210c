#pragma once

class QMenu;

namespace Vu {

/// Adds the menu of what may stand around the view: toolbars, browser, command line, each with a tick if it
/// shows.
void addAreas(QMenu* menu);

} // namespace Vu
