#pragma once

#include <boost/filesystem/path.hpp>

#include <vector>

namespace TestSupport {

/// The folder of real CAD files: QUILLET_REAL_DATA, or `../shared/data` beside the checkout. Empty if it
/// isn't there.
boost::filesystem::path realDataFolder();

/// The damaged STEP files of the real data, sorted by name.
std::vector<boost::filesystem::path> malformedFiles();

} // namespace TestSupport

/// Leaves the running test, as skipped and with a notice, where the real data is missing.
#define SKIP_WITHOUT_REAL_DATA()                                                                             \
    if (TestSupport::realDataFolder().empty())                                                               \
    GTEST_SKIP() << "NOTICE: no real CAD files (set QUILLET_REAL_DATA to their folder)"
