// Sessions by chance that are killed by chance. Some with each run, and as many as one likes by
//
//     QUILLET_SESSIONS=1000 test_data_model --gtest_filter='RandomSessions*'

#include "Tests/Server/DataModel/Recovery/RecoveryFixture.h"
#include "Tests/Support/Seed.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <sstream>

namespace {

class RandomSessionsTest : public RecoveryTest
{
protected:
    /// What a run reported about its document.
    struct Told
    {
        std::vector<std::string> digests; ///< After each step.
        size_t safe = 0;                  ///< This many of the steps were on the disk, by its last report.
    };
    static Told read(const std::string& output)
    {
        Told told;
        std::istringstream stream(output);
        for (std::string line; std::getline(stream, line);)
            if (line.starts_with("digest"))
                told.digests.push_back(line);
            else if (line == "safe")
                told.safe = told.digests.size();
        return told;
    }
    /// How many steps are lost; all if there is nothing to recover.
    size_t lost(const Told& told) const
    {
        const std::vector<std::string> found = finished({"recover"});
        if (found.empty())
            return told.digests.size();
        const auto last = std::find(told.digests.rbegin(), told.digests.rend(), found.back());
        EXPECT_NE(last, told.digests.rend()) << "what was found was never there: " << found.back();
        return static_cast<size_t>(last - told.digests.rbegin());
    }
};

size_t wanted()
{
    const char* number = std::getenv("QUILLET_SESSIONS");
    return number ? std::strtoul(number, nullptr, 10) : 0;
}

} // namespace

TEST_F(RandomSessionsTest, ASessionThatIsKilledHasWhatWasSafeAndNothingThatNeverWas)
{
    constexpr size_t kUsual = 100;
    constexpr unsigned kShort = 150, kLong = 4000; // ms, at most
    const size_t sessions = wanted() > 0 ? wanted() : kUsual;
    std::mt19937 random(TestSupport::seed());
    std::array<size_t, 3> byLoss{}; // none, one, more
    size_t most = 0, nothing = 0, steps = 0;
    for (size_t i = 0; i < sessions; ++i) {
        // From a script without a pause to somebody who thinks.
        const auto slow = wanted() > 0 ? std::array{0UL, 2UL, 20UL, 200UL}[random() % 4] : random() % 4;
        const auto time = 10 + random() % (wanted() > 0 ? kLong : kShort);
        const auto result = run({"slow", std::to_string(slow), "die-after", std::to_string(time), "random",
                                 std::to_string(random())});
        ASSERT_EQ(result.signal, SIGKILL) << result.output << result.errors;
        const Told told = read(result.output);
        const size_t count = lost(told);
        ASSERT_LE(count, told.digests.size() - told.safe) << "what was safe is lost in session " << i;
        ++byLoss[std::min<size_t>(count, 2)];
        most = std::max(most, count);
        nothing += count > 0 && count == told.digests.size();
        steps += told.digests.size();
        std::filesystem::remove_all(recoveryFolder());
    }
    std::cout << sessions << " sessions with " << steps << " steps were killed: " << byLoss[0]
              << " lost no step, " << byLoss[1] << " one, " << byLoss[2] << " more (" << most
              << " at most); in " << nothing << " nothing had been kept yet\n";
}
