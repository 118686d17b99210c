#pragma once

#include <QColor>
#include <QIcon>

namespace Vs {
class ImageSetResource;
}

namespace Vu {

/// Gives Qt's application object the palette of the option "theme" and the style sheets.
void applyTheme();
/// Whether what shows is the dark palette.
bool isDark();
/// Text that reports a failure, readable on the present palette.
QColor errorColour();
/// The icon with all of its sizes; null gives a null icon.
QIcon iconOf(const Vs::ImageSetResource* resource);

/// In logical pixels, the same all over the window.
constexpr int kMargin = 6;
constexpr int kIconSize = 24;

} // namespace Vu
