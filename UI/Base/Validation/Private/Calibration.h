#pragma once

namespace Vu {

/// What a fixed piece of work takes on this machine now, in seconds: the measure by which times of another
/// machine, or of a busier hour, are compared. With several threads, each does the work at the same time, and
/// the slowest counts. Takes about 30 ms on a machine of today.
double calibrationSeconds(unsigned threads = 1);

} // namespace Vu
