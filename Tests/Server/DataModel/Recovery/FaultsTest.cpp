// What is on the disk after a run was killed at any call, or its disk failed at one, or the power failed.

#include "Tests/Server/DataModel/Recovery/RecoveryFixture.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Seed.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <iostream>

namespace fs = std::filesystem;
using testing::AssertionFailure;
using testing::AssertionResult;
using testing::AssertionSuccess;

namespace {

/// What a run does, from the first call on that is disturbed.
struct Work
{
    friend void PrintTo(const Work& work, std::ostream* stream) { *stream << work.name; }

    const char* name;
    std::vector<std::string> before, hurt;
    bool hasFile; ///< An earlier run has left one.
};

const Work kWorks[] = {
    {"writing", {"new", "Part", "boxes", "1"}, {"boxes", "2"}, false},
    {"adopting", {}, {"recover", "write", "name", "Other", "write"}, true},
    {"deleting", {}, {"unwanted", "list"}, true},
    {"copying", {}, {"copy", "COPY", "take", "list"}, true},
};

class FaultsTest : public RecoveryTest, public testing::WithParamInterface<Work>
{
protected:
    void SetUp() override
    {
        if (!GetParam().hasFile)
            return;
        const auto left = run({"new", "Part", "box", "digest", "write", "die"});
        ASSERT_EQ(left.signal, SIGKILL);
        m_digest = lastOf(left.output, "digest");
        fs::rename(recoveryFolder(), kept());
    }
    std::string kept() const { return scratch("kept"); }
    std::string copy() const { return scratch("copy.tdsn"); }
    void renew() const
    {
        fs::remove_all(recoveryFolder());
        fs::remove(copy());
        if (GetParam().hasFile)
            fs::copy(kept(), recoveryFolder(), fs::copy_options::recursive);
    }
    /// The work with what precedes and follows the disturbed part.
    Steps steps(Steps begin, const Steps& middle, const Steps& end) const
    {
        begin.insert(begin.end(), GetParam().before.begin(), GetParam().before.end());
        begin.insert(begin.end(), middle.begin(), middle.end());
        begin.insert(begin.end(), GetParam().hurt.begin(), GetParam().hurt.end());
        begin.insert(begin.end(), end.begin(), end.end());
        std::replace(begin.begin(), begin.end(), std::string("COPY"), copy());
        return begin;
    }
    /// How many calls the work makes when nothing fails.
    int calls() const
    {
        renew();
        const auto lines =
            linesOf(run(steps({"volatile", notes()}, {"fail-at", "-1"}, {"count"})).output, "calls ");
        EXPECT_EQ(lines.size(), 1u);
        return lines.empty() ? 0 : std::stoi(lines[0].substr(6));
    }
    std::string notes() const { return scratch("notes"); }

    /// Whether a new run has one of the states that the other reported last, or, if the user has taken or
    /// discarded the file, whether it is where he would look for it.
    AssertionResult nothingIsLost(const std::string& told) const
    {
        std::vector<std::string> allowed = linesOf(told, "digest");
        if (!m_digest.empty())
            allowed.insert(allowed.begin(), m_digest);
        const auto enough =
            static_cast<std::ptrdiff_t>(std::min<size_t>(allowed.size(), GetParam().hasFile ? 3 : 2));
        allowed.erase(allowed.begin(), allowed.end() - enough);
        std::vector<std::string> found = finished({"recover"});
        std::erase_if(found, [](const std::string& line) { return !line.starts_with("digest"); });
        for (const std::string& digest : found)
            if (std::find(allowed.begin(), allowed.end(), digest) == allowed.end())
                return AssertionFailure() << "found " << digest << " after\n" << told;
        if (found.empty() && !isElsewhere())
            return AssertionFailure() << "nothing is left after\n" << told;
        return AssertionSuccess();
    }
    bool isElsewhere() const
    {
        if (fs::exists(copy()))
            return finished({"open", copy(), "digest"}).back() == m_digest;
        for (const std::string& file : files())
            if (file.starts_with("discarded/"))
                return finished({"open", recoveryFolder() + '/' + file, "digest"}).back() == m_digest;
        return false;
    }

    std::string m_digest; ///< Of the existing file.
};

INSTANTIATE_TEST_SUITE_P(Works, FaultsTest, testing::ValuesIn(kWorks),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace

TEST_P(FaultsTest, ARunThatIsKilledAtAnyCallLosesOneStepAtMost)
{
    const int count = calls();
    ASSERT_GT(count, 3);
    for (int call = 0; call < count; ++call) {
        renew();
        // At most calls only the child dies, and its parent goes on.
        const auto result = run(steps({}, {"kill-at", std::to_string(call)}, {"heal"}));
        ASSERT_TRUE(result.signal == SIGKILL || !linesOf(result.output, "event: failed").empty())
            << "nobody died at call " << call << "\n"
            << result.output;
        ASSERT_TRUE(nothingIsLost(result.output)) << "killed at call " << call;
    }
    std::cout << count << " calls of " << GetParam().name << '\n';
}

TEST_P(FaultsTest, ACallThatFailsLosesNothingAndIsToldOnce)
{
    const int count = calls();
    for (int call = 0; call < count; ++call)
        for (const int code : {call % 2 == 0 ? ENOSPC : EIO, EINTR}) {
            renew();
            const auto result =
                run(steps({}, {"error", std::to_string(code), "fail-at", std::to_string(call)}, {"die"}));
            ASSERT_EQ(result.signal, SIGKILL) << result.output << result.errors;
            EXPECT_LE(linesOf(result.output, "event: failed").size(), code == EINTR ? 0u : 1u)
                << "error " << code << " at call " << call;
            ASSERT_TRUE(nothingIsLost(result.output)) << "error " << code << " at call " << call;
        }
    renew();
    const auto result = run(steps({}, {"shorter"}, {"die"}));
    EXPECT_TRUE(linesOf(result.output, "event: failed").empty()) << result.output;
    ASSERT_TRUE(nothingIsLost(result.output));
}

TEST_P(FaultsTest, ALossOfPowerAtAnyCallLosesOneStepAtMost)
{
    const int count = calls();
    for (int call = 0; call < count; ++call) {
        renew();
        const uint32_t seed = TestSupport::seed() + static_cast<uint32_t>(call);
        const auto result = run(steps({"volatile", notes(), "seed", std::to_string(seed)},
                                      {"power-at", std::to_string(call)}, {"heal"}));
        ASSERT_EQ(result.signal, SIGKILL) << "nobody died at call " << call << "\n" << result.output;
        ASSERT_TRUE(nothingIsLost(result.output)) << "without power at call " << call << ", seed " << seed;
    }
}
