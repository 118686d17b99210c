#pragma once

namespace Vu {

class MainWindow;

/// Shows the search palette over a window, or closes the one that shows. A command that is a list or a menu
/// opens it there, whether or not a toolbar shows it; a line goes into the window's command line, which
/// comes if it is hidden.
void toggleSearch(MainWindow* window);

} // namespace Vu
