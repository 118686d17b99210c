#pragma once

namespace Vu {

class MainWindow;

/// Opens the search palette over a window, or closes the open one. A command that is a list or a menu opens
/// there, whether or not a toolbar shows it; a line goes into the window's command line, which is shown if it
/// was hidden.
void toggleSearch(MainWindow* window);

} // namespace Vu
