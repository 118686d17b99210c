#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace TestSupport {

/// What a process of tests had done when it ended.
struct Progress
{
    std::set<std::string> remaining; ///< The full names of the selected tests that were not begun.
    std::string running;             ///< The test that was begun and did not end; empty if there is none.
    bool begun = false;              ///< Whether there was a test at all.
    bool ended = false;              ///< Whether the process came to the end of its tests.
};

/// Makes this process write into the file how far its tests are; a crash does not harm what was written.
void noteProgress(const std::filesystem::path& file);
/// To be called behind the last test.
void noteEnd();
/// What the process that wrote the file had done.
Progress readProgress(const std::filesystem::path& file);

} // namespace TestSupport
