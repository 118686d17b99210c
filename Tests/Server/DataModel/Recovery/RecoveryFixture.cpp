#include "Tests/Server/DataModel/Recovery/RecoveryFixture.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

TestSupport::ProcessResult RecoveryTest::run(const Steps& steps) const
{
    Steps arguments = steps;
    arguments.insert(arguments.begin(), profile());
    return TestSupport::runProcess(probe(), arguments);
}

std::string RecoveryTest::probe()
{
    return (TestSupport::runningTree() / "bin/recovery_probe").string();
}

std::vector<std::string> RecoveryTest::finished(const Steps& steps) const
{
    const TestSupport::ProcessResult result = run(steps);
    EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
    std::vector<std::string> lines;
    std::istringstream stream(result.output);
    for (std::string line; std::getline(stream, line);)
        if (line != "done")
            lines.push_back(line);
    return lines;
}

std::vector<std::string> RecoveryTest::offered() const
{
    return finished({"list"});
}

std::vector<std::string> RecoveryTest::linesOf(const std::string& output, const std::string& word)
{
    std::vector<std::string> lines;
    std::istringstream stream(output);
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with(word))
            lines.push_back(line);
    return lines;
}

std::string RecoveryTest::lastOf(const std::string& output, const std::string& word)
{
    const std::vector<std::string> lines = linesOf(output, word);
    return lines.empty() ? std::string() : lines.back();
}

std::vector<std::string> RecoveryTest::files() const
{
    std::vector<std::string> found;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(recoveryFolder(), error))
        if (entry.is_regular_file() && entry.path().filename() != "lock")
            found.push_back(fs::relative(entry.path(), recoveryFolder()).string());
    std::sort(found.begin(), found.end());
    return found;
}
