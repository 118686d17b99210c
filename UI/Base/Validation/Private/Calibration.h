#pragma once

namespace Vu {

/// How long a fixed piece of work takes on this machine now, in seconds: the unit for comparing times with
/// another machine, or a busier hour. With several threads, each does the work at the same time, and the
/// slowest counts. Takes about 30 ms on a current machine.
double calibrationSeconds(unsigned threads = 1);

} // namespace Vu
