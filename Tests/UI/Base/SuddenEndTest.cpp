#include "UI/Base/Program/Private/SuddenEnd.h"

#include "Server/Base/UnfinishedFile.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <cstdlib>
#include <gtest/gtest.h>

using namespace Vu;

namespace {

constexpr int kDestroyed = 99;
constexpr int kBroken = 3;

/// Stands in for the destructors of things that are in use.
void destroyEverything()
{
    std::_Exit(kDestroyed);
}

} // namespace

TEST(SuddenEndTest, AnExitFromWithinAnEventDestroysNothingAndLeavesNothingHalfWritten)
{
    const TestSupport::ScratchFolder folder;
    const auto half = folder.write("half", "written");
    const auto whole = folder.write("whole", "written");
    const auto breakOff = [&] {
        std::atexit(destroyEverything);
        const Vs::UnfinishedFile unfinished(half.string());
        {
            const Vs::UnfinishedFile complete(whole.string());
        }
        SuddenEnd::watch();
        std::exit(kBroken);
    };
    EXPECT_EXIT(breakOff(), testing::ExitedWithCode(kBroken), "");
    EXPECT_FALSE(boost::filesystem::exists(half));
    EXPECT_TRUE(boost::filesystem::exists(whole));
}

TEST(SuddenEndTest, TheOrdinaryEndIsAsEver)
{
    const auto end = [] {
        std::atexit(destroyEverything);
        SuddenEnd::watch();
        SuddenEnd::over();
        std::exit(0);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(kDestroyed), "");
}
