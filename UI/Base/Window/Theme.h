#pragma once

#include <QColor>

namespace Vu {

/// Gives Qt's application object the palette of the option "theme" and the style sheets.
void applyTheme();
/// The same, now and whenever the option changes.
void followTheme();
/// Whether what shows is the dark palette.
bool isDark();
/// Text that reports a failure, readable on the present palette.
QColor errorColour();

/// In logical pixels, the same all over the window.
constexpr int kMargin = 6;
constexpr int kIconSize = 24;

} // namespace Vu
