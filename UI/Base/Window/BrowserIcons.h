#pragma once

#include <QPixmap>

/// The browser's icons, drawn here in tones that are readable on light and dark.
namespace Vu::BrowserIcons {

/// A small box seen from a corner.
[[nodiscard]] QPixmap part();
/// Three of them.
[[nodiscard]] QPixmap assembly();
/// A box with a warning sign in front: a part that has lost faces.
[[nodiscard]] QPixmap damagedPart();
/// A small camera: a named view.
[[nodiscard]] QPixmap camera();

} // namespace Vu::BrowserIcons
