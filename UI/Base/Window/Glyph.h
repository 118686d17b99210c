#pragma once

#include <QIcon>

namespace Vu {

/// Small signs of the window itself, drawn at whatever size and density they are shown.
enum class Glyph { Bell, Error, Warning, Information, Offer, Close, Plus, Down };

/// The colour is asked for when the icon is drawn, so that it follows the palette.
[[nodiscard]] QIcon glyphIcon(Glyph glyph);

} // namespace Vu
