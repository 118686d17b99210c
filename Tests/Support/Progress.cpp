#include "Tests/Support/Progress.h"

#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

namespace TestSupport {

namespace {

enum Step : char { Selected = '?', Begun = '>', Done = '<', End = '.' };

int s_file = -1;

void note(Step step, const std::string& test = {})
{
    const std::string line = static_cast<char>(step) + test + '\n';
    [[maybe_unused]] const auto written = write(s_file, line.data(), line.size());
}

std::string nameOf(const testing::TestInfo& test)
{
    return std::string(test.test_suite_name()) + '.' + test.name();
}

class Listener : public testing::EmptyTestEventListener
{
    void OnTestIterationStart(const testing::UnitTest& all, int) override
    {
        for (int i = 0; i < all.total_test_suite_count(); ++i)
            for (int k = 0; k < all.GetTestSuite(i)->total_test_count(); ++k)
                if (const testing::TestInfo* test = all.GetTestSuite(i)->GetTestInfo(k); test->should_run())
                    note(Selected, nameOf(*test));
    }
    void OnTestStart(const testing::TestInfo& test) override { note(Begun, nameOf(test)); }
    void OnTestEnd(const testing::TestInfo&) override { note(Done); }
};

} // namespace

void noteProgress(const std::filesystem::path& file)
{
    s_file = open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    testing::UnitTest::GetInstance()->listeners().Append(new Listener);
}

void noteEnd()
{
    note(End);
}

Progress readProgress(const std::filesystem::path& file)
{
    Progress progress;
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        const std::string test = line.substr(1);
        switch (line.front()) {
        case Selected:
            progress.remaining.insert(test);
            break;
        case Begun:
            progress.remaining.erase(test);
            progress.running = test;
            progress.begun = true;
            break;
        case Done:
            progress.running.clear();
            break;
        default:
            progress.ended = true;
        }
    }
    return progress;
}

} // namespace TestSupport
