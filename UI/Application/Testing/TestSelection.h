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
    std::string name; ///< The path relative to the tested folder.
};

/// Everything in the folder and its subfolders, or the one file, sorted by name, so that every machine has
/// the same parts.
[[nodiscard]] std::vector<TestFile> testsIn(const boost::filesystem::path& folderOrFile);

/// Those that the run is asked for: selected by name and by last result, and of these its part. If the
/// history knows durations, the parts take about equally long; otherwise neighbours, which often take
/// similarly long, are spread. Sorted by name.
[[nodiscard]] std::vector<TestFile> chosen(const std::vector<TestFile>& all, const TestRun& run,
                                           const TestHistory& history);

} // namespace Quillet
