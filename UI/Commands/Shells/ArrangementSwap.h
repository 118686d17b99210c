#pragma once

namespace Vu {
class Arrangement;
}

namespace Vu::Commands {

/// Carries what the user has before his eyes from one form of a layout to another: the canvases with their
/// views, the places of the other areas, and whether browser and orbicon show. `from` is left without these
/// areas.
void carryOver(Arrangement& from, Arrangement& to);

} // namespace Vu::Commands
