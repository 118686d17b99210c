#pragma once

namespace Vu {

/// Lets recordings write down what the program does, and replays reach the program. Private to the host;
/// called once.
void installTranscripts();

} // namespace Vu
