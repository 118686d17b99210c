#pragma once

#include "UI/Application/Testing/TestProcess.h"

#include <string>
#include <vector>

namespace Quillet {

struct TestCase
{
    std::string name; ///< The path relative to the tested folder.
    std::string file;
    TestResult result;
    int tries = 1; ///< The result is that of the last one.
};

/// How many ended in each way.
struct TestCounts
{
    explicit TestCounts(const std::vector<TestCase>& cases);

    int passed = 0;
    int failed = 0;
    int errors = 0; ///< Crashed or timed out.
};

/// Writes the cases as TAP, version 13. Throws Vs::Exception if the file can't be written.
void writeTap(const std::string& file, const std::vector<TestCase>& cases);

/// Writes the cases as JUnit XML, with the file of each and the line that failed. A failed line is a failure;
/// crashes and timeouts are errors. Throws Vs::Exception if the file can't be written.
void writeJUnit(const std::string& file, const std::string& suite, double seconds,
                const std::vector<TestCase>& cases);

} // namespace Quillet
