// Folders, files and records that aren't as a run would have left them.

#include "Server/Base/Strings.h"
#include "Tests/Server/DataModel/Native/NativeFixture.h"
#include "Tests/Server/DataModel/Recovery/RecoveryFixture.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Users.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class RecoveryBadInputTest : public RecoveryTest
{
protected:
    /// Leaves a file with the previous generation, and returns the run's reports.
    std::vector<std::string> left(const Steps& first = {"new", "Part"}) const
    {
        Steps steps = first;
        steps.insert(steps.end(), {"box", "digest", "write", "box", "digest", "write", "die"});
        const auto result = run(steps);
        EXPECT_EQ(result.signal, SIGKILL) << result.output << result.errors;
        return linesOf(result.output, "digest");
    }
    /// The paths of the last file and of the previous one.
    std::string file(bool older) const
    {
        for (const std::string& each : files())
            if ((fs::path(each).parent_path().filename() == "older") == older)
                return recoveryFolder() + '/' + each;
        return {};
    }
    /// Runs in another thread; `between` is called when the run has reached "hold".
    template <class Between>
    std::vector<std::string> interrupted(Steps steps, Between&& between) const
    {
        const std::string release = scratch("release");
        std::replace(steps.begin(), steps.end(), std::string("HOLD"), release);
        std::vector<std::string> lines;
        std::thread runner([&] { lines = finished(steps); });
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!fs::exists(release + ".ready") && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        between();
        TestSupport::overwrite(release, "");
        runner.join();
        return lines;
    }
};

} // namespace

TEST_F(RecoveryBadInputTest, AFolderThatGoesDuringARunIsMadeAgainAndIsNobodyElses)
{
    const std::vector<std::string> lines =
        interrupted({"new", "Part", "box", "write", "vanish", "box", "digest", "write", "hold", "HOLD"},
                    [&] { EXPECT_TRUE(offered().empty()) << "of a run that lives"; });
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines.back(), "written");
    EXPECT_EQ(finished({"recover"}).back(), lines[1]);
}

TEST_F(RecoveryBadInputTest, AFolderThatMayNotBeWrittenIsToldOnceUntilItWorksAgain)
{
    SKIP_UNLESS_ROOT();
    const TestSupport::OpenFolder open;
    const std::string home = (open.path() / "profile").string(), recovery = home + "/recovery";
    fs::create_directories(recovery);
    for (const std::string& each : {home, recovery})
        ASSERT_EQ(chown(each.c_str(), TestSupport::kSomebody, TestSupport::kSomebody), 0);
    const std::string user = std::to_string(TestSupport::kSomebody);
    // A folder in which files can't be created, whatever is done to its permissions.
    ASSERT_EQ(chown(recovery.c_str(), 0, 0), 0);
    ASSERT_EQ(chmod(recovery.c_str(), 0755), 0);
    const auto result = TestSupport::runProcess(
        "/usr/bin/setpriv", {"--reuid=" + user, "--regid=" + user, "--clear-groups", probe(), home, "list",
                             "new", "Part", "box", "write", "box", "write", "end"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    const std::vector<std::string> told = linesOf(result.output, "event:");
    ASSERT_EQ(told.size(), 1u) << result.output;
    EXPECT_TRUE(told[0].starts_with("event: failed: Changes to \"Part\" haven't been kept")) << told[0];
}

TEST_F(RecoveryBadInputTest, ASourceThatIsGoneOrIsNoFileAnyMoreIsNoReasonToLoseTheDocument)
{
    const std::string source = scratch("source.tdsn");
    const std::string digest = left({"new", "Part", "box", "save", source}).back();
    fs::remove(source);
    EXPECT_TRUE(offered().at(0).starts_with("file source|" + source + '|')) << offered().at(0);
    fs::create_directories(source);
    EXPECT_TRUE(offered().at(0).starts_with("file source||")) << offered().at(0);
    EXPECT_EQ(finished({"recover"}).back(), digest);
}

TEST_F(RecoveryBadInputTest, ASourceThatWasOnlyCopiedBackIsSavedWithoutAQuestion)
{
    const std::string source = scratch("source.tdsn"), away = scratch("away.tdsn");
    left({"new", "Part", "box", "save", source});
    const std::string before = TestSupport::contentOf(source);
    fs::rename(source, away);
    fs::copy(away, source);
    EXPECT_EQ(finished({"recover", "path", source, "save-again"}).back(), "saved");
    EXPECT_NE(TestSupport::contentOf(source), before);
}

TEST_F(RecoveryBadInputTest, AFileWhoseModelIsAnotherGivesWayButIsBetterThanNothing)
{
    const std::vector<std::string> digests = left();
    const auto tellAnother = [&](bool older) {
        std::vector<Entry> entries = readPackage(Vs::Strings::fromBytes(file(older)));
        for (Entry& entry : entries)
            if (const size_t place = entry.content.find("\"digests\": ["); entry.name == "recovery.json")
                entry.content.insert(entry.content.find('"', place + 10) + 1, "1");
        writePackage(Vs::Strings::fromBytes(file(older)), entries);
    };
    tellAnother(false);
    EXPECT_NE(offered().at(0).find("|older|"), std::string::npos) << offered().at(0);
    tellAnother(true);
    EXPECT_NE(offered().at(0).find("|last|"), std::string::npos) << offered().at(0);
    EXPECT_EQ(finished({"recover"}).back(), digests.back());
}

TEST_F(RecoveryBadInputTest, NoTimeOfAFileDecidesWhichIsTheLast)
{
    const std::vector<std::string> digests = left();
    using Clock = fs::file_time_type::clock;
    fs::last_write_time(file(false), Clock::now() - std::chrono::hours(24 * 365 * 30));
    fs::last_write_time(file(true), Clock::now() + std::chrono::hours(24 * 365));
    EXPECT_NE(offered().at(0).find("|last|"), std::string::npos) << offered().at(0);
    EXPECT_EQ(finished({"recover"}).back(), digests.back());
}

TEST_F(RecoveryBadInputTest, AThousandFilesAreOfferedEachOnce)
{
    constexpr size_t kCount = 1000;
    left();
    const fs::path session = fs::path(file(false)).parent_path().parent_path();
    for (size_t i = 1; i < kCount; ++i)
        fs::copy(session, session.string() + '-' + std::to_string(i), fs::copy_options::recursive);
    const std::vector<std::string> lines = offered();
    EXPECT_EQ(lines.size(), kCount);
    EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()).size(), kCount);
}

TEST_F(RecoveryBadInputTest, AFolderWithoutItsLockIsOfferedAllTheSame)
{
    const std::string digest = left().back();
    fs::remove(fs::path(file(false)).parent_path().parent_path() / "lock");
    EXPECT_EQ(finished({"recover"}).back(), digest);
}

TEST_F(RecoveryBadInputTest, AWorkerThatDiesIsNoProofThatAFileIsDamaged)
{
    const std::string digest = left().back();
    // A program like the tested one, except for its worker.
    const fs::path real = TestSupport::runningTree().string(), tree = scratch("tree");
    fs::create_directories(tree / "bin");
    fs::create_directory_symlink(real / "lib", tree / "lib");
    fs::copy(real / "bin/recovery_probe", tree / "bin");
    const fs::path worker = tree / "bin/quillet-check-recovery";
    const auto withWorker = [&](const std::string& script) {
        TestSupport::overwrite(worker.string(), "#!/bin/sh\n" + script + "\nkill -9 $$\n");
        fs::permissions(worker, fs::perms::owner_all);
        return TestSupport::runProcess((tree / "bin/recovery_probe").string(), {profile(), "list"}).output;
    };
    EXPECT_TRUE(withWorker(":").starts_with("file Part")) << "one that can't run";
    EXPECT_EQ(withWorker("printf '\\011\\000\\000\\000P\\000\\000\\000\\000\\000\\000\\000\\000' >&3"),
              "done\n")
        << "one that dies over a file";
    EXPECT_EQ(files().size(), 2u);
    EXPECT_EQ(finished({"recover"}).back(), digest);
}
