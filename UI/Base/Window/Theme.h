#pragma once

#include <QColor>

namespace Vu {

/// Gives Qt's application object the palette of the option "theme" and the style sheets.
void applyTheme();
/// The same, now and whenever the option changes.
void followTheme();
/// Whether the dark palette is shown.
bool isDark();
/// The colour for failure texts, readable on the present palette.
QColor errorColour();

/// In logical pixels, the same throughout the window.
constexpr int kMargin = 6;
constexpr int kIconSize = 24;

} // namespace Vu
