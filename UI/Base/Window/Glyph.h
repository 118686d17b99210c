#pragma once

#include <QIcon>

namespace Vu {

/// Small glyphs of the window itself, drawn for the size and pixel density at which they are shown.
enum class Glyph {
    Bell,
    Error,
    Warning,
    Information,
    Offer,
    Close,
    Plus,
    Down,
    Run,
    StepOver,
    StepInto,
    StepOut,
    RunToLine,
    Restart,
    Stop
};

/// The colour is asked for when the icon is drawn, so that it follows the palette.
[[nodiscard]] QIcon glyphIcon(Glyph glyph);

} // namespace Vu
