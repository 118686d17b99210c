#pragma once

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace Quillet {

class TestHistory;
struct TestRun;

/// A transcript or script that a test run may run.
struct TestFile
{
    boost::filesystem::path path;
    std::string name; ///< The path below the folder that is tested.
};

/// All of the folder and of its folders, or the one file, sorted by name, so that every machine has the same
/// parts.
[[nodiscard]] std::vector<TestFile> testsIn(const boost::filesystem::path& folderOrFile);

/// Those that the run is asked for: by their names, by how they ended last, and of these its part. Where the
/// history knows times, the parts take about as long as each other; else neighbours, which often take alike
/// long, are spread. Sorted by name.
[[nodiscard]] std::vector<TestFile> chosen(const std::vector<TestFile>& all, const TestRun& run,
                                           const TestHistory& history);

} // namespace Quillet
