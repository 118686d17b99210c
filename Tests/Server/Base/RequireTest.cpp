#include "Server/Base/LockBase.h"
#include "Server/Base/OptionGroup.h"
#include "Server/Base/Task.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

class RequireDeathTest : public testing::Test
{
protected:
    // The child starts from scratch, so that what other tests have initialised doesn't matter.
    RequireDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(RequireDeathTest, ABrokenPromiseStopsTheProgramAndSaysWhichAndWhere)
{
    Vs::Tasks tasks;
    EXPECT_DEATH(tasks.add(std::unique_ptr<Vs::Task>()),
                 "Task\\.cpp:[0-9]+: broken promise in .*add.*: a task that is queued is there");
    EXPECT_DEATH(Vs::LockBase(nullptr), "LockBase\\.h:[0-9]+: broken promise in .*: a lock has a name");
}

TEST_F(RequireDeathTest, WhatIsForTheMainThreadAloneStopsAnyOther)
{
    const auto elsewhere = [](auto work) { std::thread(work).join(); };
    EXPECT_DEATH(elsewhere([] { Vs::OptionGroup group("RequireDeathTest"); }),
                 "OptionGroup\\.cpp:[0-9]+: .*only the main thread comes here");
    Vs::Tasks tasks;
    EXPECT_DEATH(elsewhere([&] {
                     tasks.flush();
                     tasks.runOnce();
                 }),
                 "Task\\.cpp:[0-9]+: .*only the main thread");
    // What any thread may do is accepted.
    elsewhere([&] { tasks.post([] {}); });
    EXPECT_EQ(tasks.size(), 1u);
}

} // namespace
