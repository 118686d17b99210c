#pragma once

namespace Vu {
class Arrangement;
}

namespace Vu::Commands {

/// Transfers what the user is looking at from one form of a layout to another: the canvases with their views,
/// the places of the other areas, and whether browser and orbicon are shown. `from` is left without these
/// areas.
void carryOver(Arrangement& from, Arrangement& to);

} // namespace Vu::Commands
