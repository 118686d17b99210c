#pragma once

#include <string>

class QMainWindow;

namespace Vu {

/// Gives a window the menus of MenuBar; F10 opens the first, Alt reaches them. Returns the problems of their
/// files, empty if there are none; what could be read is shown regardless.
[[nodiscard]] std::wstring addMenus(QMainWindow& window);

} // namespace Vu
