#pragma once

namespace TestSupport {

/// What the running test's random numbers begin with, from 1 to 99999: the number that also shuffles the
/// tests. The environment variable QUILLET_SEED or --gtest_random_seed gives it; it is printed.
unsigned seed();

} // namespace TestSupport
