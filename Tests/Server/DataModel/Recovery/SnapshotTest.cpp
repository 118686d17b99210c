// What a run writes for its recovery, and when.

#include "Tests/Server/DataModel/Recovery/RecoveryFixture.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Users.h"

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;

class SnapshotTest : public RecoveryTest
{
protected:
    void forgetAll() const { fs::remove_all(recoveryFolder()); }
};

TEST_F(SnapshotTest, AKilledRunLeavesItsLastStepAndAnEndedOneNothing)
{
    const auto killed = run({"new", "Bracket", "box", "work", "box", "digest", "work", "die"});
    EXPECT_EQ(killed.signal, SIGKILL);
    const std::vector<std::string> lines = offered();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].starts_with("file Bracket||TestDocType|last|" + recoveryFolder())) << lines[0];
    EXPECT_TRUE(lines[0].ends_with("/Bracket.backup")) << lines[0];
    EXPECT_EQ(finished({"recover"}).back(), lastOf(killed.output, "digest"));

    forgetAll();
    finished({"forget", "new", "Bracket", "box", "work", "end"});
    EXPECT_TRUE(files().empty());
    EXPECT_TRUE(offered().empty());
}

TEST_F(SnapshotTest, WhatNeedsNoRecoveryIsNotWritten)
{
    const std::string file = scratch("part.tdsn");
    EXPECT_EQ(run({"new", "Untouched", "work", "die"}).signal, SIGKILL);
    EXPECT_EQ(run({"new", "Saved", "box", "work", "save", file, "die"}).signal, SIGKILL);
    EXPECT_EQ(run({"off", "new", "Not wanted", "box", "write", "die"}).signal, SIGKILL);
    EXPECT_TRUE(offered().empty());
    EXPECT_TRUE(files().empty());
}

TEST_F(SnapshotTest, NothingIsWrittenWithinATransactionOrWhileItIsDisabled)
{
    finished({"new", "Part", "begin", "box", "write"});
    EXPECT_TRUE(files().empty());
    EXPECT_EQ(finished({"new", "Part", "begin", "box", "commit", "write"}).back(), "written");
    forgetAll();
    // A quiet moment doesn't count while a command suppresses auto-save.
    const auto killed = run({"new", "Part", "disable", "box", "enable", "work", "die"});
    EXPECT_EQ(killed.signal, SIGKILL);
    EXPECT_EQ(offered().size(), 1u);
}

TEST_F(SnapshotTest, ADiskThatKeepsSomethingElseIsNoticedAndTheLastFileStays)
{
    const auto result =
        run({"new", "Part", "boxes", "1", "garble", "box", "write", "heal", "write", "digest", "die"});
    const std::vector<std::string> told = linesOf(result.output, "event:");
    ASSERT_EQ(told.size(), 2u) << result.output;
    EXPECT_NE(told[0].find("isn't what was written"), std::string::npos) << told[0];
    EXPECT_EQ(told[1], "event: works again");
    EXPECT_EQ(finished({"recover"}).back(), lastOf(result.output, "digest"));
}

TEST_F(SnapshotTest, WithoutChildrenTheRunWritesByItself)
{
    SKIP_UNLESS_ROOT();
    const TestSupport::OpenFolder open;
    const std::string home = (open.path() / "profile").string();
    fs::create_directories(home);
    ASSERT_EQ(chown(home.c_str(), TestSupport::kSomebody, TestSupport::kSomebody), 0);
    const std::string user = std::to_string(TestSupport::kSomebody);
    const auto asSomebody = [&](Steps steps) {
        steps.insert(steps.begin(), {"--reuid=" + user, "--regid=" + user, "--clear-groups", probe(), home});
        return TestSupport::runProcess("/usr/bin/setpriv", steps);
    };
    const auto result = asSomebody({"new", "Part", "box", "digest", "nofork", "work", "die"});
    ASSERT_EQ(result.output.find("processes can be made"), std::string::npos);
    EXPECT_EQ(result.signal, SIGKILL) << result.output << result.errors;
    // Nor can the file be examined, which is no reason to take it for damaged.
    EXPECT_EQ(asSomebody({"nofork", "list"}).output, "done\n");
    EXPECT_EQ(lastOf(asSomebody({"recover"}).output, "digest"), lastOf(result.output, "digest"));
}

TEST_F(SnapshotTest, AFolderThatCannotBeUsedIsToldAndBreaksNothing)
{
    fs::create_directories(profile());
    TestSupport::overwrite(recoveryFolder(), "a file where the folder belongs");
    const std::vector<std::string> lines = finished({"list", "new", "Part", "box", "write", "end"});
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[0].starts_with("event: failed: Changes to \"Part\" haven't been kept")) << lines[0];
    EXPECT_EQ(lines[1], "not written");
}

TEST_F(SnapshotTest, NamesOfDocumentsFitIntoNamesOfFiles)
{
    std::string longName;
    for (int i = 0; i < 200; ++i)
        longName += "ä";
    for (const std::string& name : {std::string("a/b\nc"), std::string(".hidden"), longName}) {
        EXPECT_EQ(run({"new", name, "box", "write", "die"}).signal, SIGKILL);
        const std::vector<std::string> lines = offered();
        ASSERT_FALSE(lines.empty()) << name;
        EXPECT_EQ(finished({"recover"}).size(), 2u) << name;
        forgetAll();
    }
}
