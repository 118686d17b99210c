#pragma once

#include "Tests/Support/Process.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

/// Runs scripts in the built program.
class Scripted : public testing::Test
{
protected:
    /// Runs a script whose assertions must hold; its arguments are `arguments`.
    void holds(const std::string& code, const std::vector<std::string>& arguments = {}) const
    {
        std::vector<std::string> all{"--headless", "--script", folder.write("script.py", code).string(),
                                     "--"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const TestSupport::ProcessResult result = TestSupport::runQuillet(all);
        EXPECT_EQ(result.exitCode, 0) << result.errors << "signal " << result.signal;
    }

    TestSupport::ScratchFolder folder;
};
