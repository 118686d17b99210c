#pragma once

namespace Vu {

/// Has recordings take down what the program does, and replays find the program behind them. Private to the
/// host; called once.
void installTranscripts();

} // namespace Vu
