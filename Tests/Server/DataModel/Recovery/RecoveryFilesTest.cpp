// What a new run is offered of those that ended badly, and when a recovery file is removed.

#include "Server/Base/Strings.h"
#include "Server/DataModel/Recovery/Private/RecoveryCheck.h"
#include "Server/DataModel/Recovery/Private/SessionFolder.h"
#include "Tests/Server/DataModel/Native/NativeFixture.h"
#include "Tests/Server/DataModel/Recovery/RecoveryFixture.h"
#include "Tests/Support/Files.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <sys/stat.h>
#include <thread>

namespace fs = std::filesystem;
using TestSupport::contentOf;
using TestSupport::overwrite;

class RecoveryFilesTest : public RecoveryTest
{
protected:
    /// A run that is killed after a box and, in a separate file, another; returns its reports.
    std::string killed(const std::string& name = "Part") const
    {
        const auto result = run({"new", name, "box", "digest", "write", "box", "digest", "write", "die"});
        EXPECT_EQ(result.signal, SIGKILL) << result.output << result.errors;
        return result.output;
    }
    /// The paths of its files: the last one and the previous one.
    std::pair<std::string, std::string> generations() const
    {
        std::string last, older;
        for (const std::string& file : files())
            (fs::path(file).parent_path().filename() == "older" ? older : last) =
                recoveryFolder() + '/' + file;
        EXPECT_FALSE(last.empty() || older.empty());
        return {last, older};
    }
    static void damage(const std::string& file)
    {
        std::string content = contentOf(file);
        content[content.size() / 2] = static_cast<char>(content[content.size() / 2] ^ 1);
        overwrite(file, content);
    }
    /// Waits for a run in another thread.
    static void await(const std::string& file)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!fs::exists(file) && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        ASSERT_TRUE(fs::exists(file));
    }
};

TEST_F(RecoveryFilesTest, ARecoveredDocumentIsDirtyAndKeepsItsFileUntilItIsSafeElsewhere)
{
    const std::string digest = lastOf(killed(), "digest");
    // Killed again before it had its own file.
    const auto again = run({"recover", "dirty", "list", "die"});
    EXPECT_EQ(again.output, "event: gone\n" + digest + "\ndirty\n");
    ASSERT_EQ(offered().size(), 1u);
    const std::string before = offered()[0];
    // And after it had one.
    EXPECT_EQ(run({"recover", "work", "die"}).signal, SIGKILL);
    ASSERT_EQ(offered().size(), 1u);
    EXPECT_NE(offered()[0], before);
    EXPECT_EQ(finished({"recover"}).back(), digest);

    // A run without a user that ends has asked nobody: what was recovered stays.
    finished({"forget", "recover", "work", "end"});
    EXPECT_EQ(finished({"recover"}).back(), digest);
    const std::string file = scratch("saved.tdsn");
    EXPECT_EQ(finished({"recover", "save", file, "dirty", "list", "end"}).back(), "clean");
    EXPECT_TRUE(files().empty());
    EXPECT_EQ(finished({"open", file, "digest"}).back(), digest);
}

TEST_F(RecoveryFilesTest, ADamagedFileGivesWayToTheOneBeforeAndTwoDamagedOnesAreTold)
{
    const std::vector<std::string> digests = linesOf(killed(), "digest");
    const auto [last, older] = generations();
    damage(last);
    ASSERT_EQ(offered().size(), 1u);
    EXPECT_NE(offered()[0].find("|older|"), std::string::npos) << offered()[0];
    EXPECT_EQ(finished({"recover"}).back(), digests[0]);

    overwrite(older, contentOf(older).substr(0, 1000));
    const std::vector<std::string> told = offered();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_TRUE(told[0].starts_with("event: damaged: ")) << told[0];
    EXPECT_NE(told[0].find(recoveryFolder() + "/damaged/"), std::string::npos) << told[0];
    EXPECT_TRUE(offered().empty());
    EXPECT_EQ(files().size(), 2u);
}

TEST_F(RecoveryFilesTest, NoCutOrForeignFileIsTakenForASoundOne)
{
    using Vs::Recovery::RecoveryCheck;
    killed();
    const std::string file = generations().first, whole = contentOf(file);
    EXPECT_EQ(RecoveryCheck::of(file).answer, RecoveryCheck::Answer::Sound);
    for (size_t size = 0; size < whole.size(); size += 1024) {
        overwrite(file, whole.substr(0, size));
        ASSERT_EQ(RecoveryCheck::of(file).answer, RecoveryCheck::Answer::Damaged) << size;
    }
    // A native file that doesn't say what it is the recovery of, and one with too much in its record.
    std::vector<Entry> entries;
    overwrite(file, whole);
    entries = readPackage(Vs::Strings::fromBytes(file));
    const auto with = [&](const std::string& name, const std::string& from, const std::string& to) {
        std::vector<Entry> changed = entries;
        for (Entry& entry : changed)
            if (const size_t place = entry.content.find(from);
                entry.name == name && place != std::string::npos)
                entry.content.replace(place, from.size(), to);
        writePackage(Vs::Strings::fromBytes(file), changed);
        return RecoveryCheck::of(file);
    };
    EXPECT_EQ(with("recovery.json", "", "").answer, RecoveryCheck::Answer::Sound);
    EXPECT_EQ(with("recovery.json", "{", "").answer, RecoveryCheck::Answer::Damaged);
    EXPECT_EQ(with("recovery.json", "savedTime", "savedtime").answer, RecoveryCheck::Answer::Damaged);
    EXPECT_EQ(with("manifest.json", "\"format\": 5", "\"format\": 6").answer, RecoveryCheck::Answer::Strange);
    EXPECT_EQ(with("recovery.json", "{", R"({"source": {"path": "/etc"},)").record.source, L"");
    EXPECT_EQ(with("recovery.json", "{", R"({"source": {"path": "/etc/gone %2521"},)").record.source,
              L"/etc/gone %21");
}

TEST_F(RecoveryFilesTest, WhatIsNoFileOfThisProgramIsLeftAlone)
{
    killed();
    const std::string last = generations().first, document = fs::path(last).parent_path().string();
    const std::string elsewhere = scratch("elsewhere.backup");
    fs::rename(last, elsewhere);
    fs::remove_all(document + "/older");
    fs::create_symlink(elsewhere, last);
    fs::create_directories(document + "/folder.backup");
    ASSERT_EQ(mkfifo((document + "/pipe.backup").c_str(), 0600), 0);
    fs::create_directories(recoveryFolder() + "/no session/" + "x");
    overwrite(recoveryFolder() + "/a file", "");
    EXPECT_TRUE(offered().empty());
    EXPECT_TRUE(fs::is_symlink(last));
    EXPECT_TRUE(fs::exists(elsewhere));
    EXPECT_TRUE(fs::exists(document + "/pipe.backup"));
}

TEST_F(RecoveryFilesTest, NoTwoLivingRunsAreOfferedTheSame)
{
    const std::string release = scratch("release");
    std::thread living([&] {
        EXPECT_EQ(finished({"new", "Living", "box", "write", "hold", release}).size(), 1u);
    });
    await(release + ".ready");
    EXPECT_TRUE(offered().empty()) << "of a run that lives";
    killed();
    const std::string second = scratch("second");
    std::thread taker([&] { EXPECT_EQ(finished({"list", "hold", second}).size(), 1u); });
    await(second + ".ready");
    EXPECT_TRUE(offered().empty()) << "of a run that another has taken over";
    for (const fs::directory_entry& session : fs::directory_iterator(recoveryFolder()))
        EXPECT_FALSE(Vs::Recovery::SessionFolder::claim(session.path().string()).unfinished)
            << "nobody waits for a living run to end";
    overwrite(second, "");
    taker.join();
    EXPECT_EQ(offered().size(), 1u);
    overwrite(release, "");
    living.join();
    EXPECT_EQ(offered().size(), 2u);
}

TEST_F(RecoveryFilesTest, AFileGoesWhenItWasCopiedAndStaysWhenThatFailed)
{
    const std::string digest = lastOf(killed(), "digest");
    const std::vector<std::string> failed =
        finished({"copy", scratch("no/such/folder.tdsn"), "take", "list"});
    ASSERT_EQ(failed.size(), 4u);
    EXPECT_TRUE(failed[0].starts_with("event: kept: ")) << failed[0];
    EXPECT_EQ(failed[1], "not copied");
    EXPECT_TRUE(failed[2].starts_with("event: kept: ")) << failed[2];
    EXPECT_TRUE(failed[3].starts_with("file Part")) << failed[3];

    const std::string copy = scratch("copy.tdsn");
    const std::vector<std::string> copied = finished({"copy", copy, "take", "list"});
    EXPECT_EQ(copied, (std::vector<std::string>{"copied", "event: gone"}));
    EXPECT_TRUE(files().empty());
    EXPECT_EQ(finished({"open", copy, "digest"}).back(), digest);
}

TEST_F(RecoveryFilesTest, WhatNobodyWantsIsKeptForADayButNotOffered)
{
    killed();
    EXPECT_EQ(finished({"unwanted", "list"}), std::vector<std::string>{"event: gone"});
    ASSERT_EQ(files().size(), 1u);
    EXPECT_TRUE(files()[0].starts_with("discarded/")) << files()[0];
    finished({"new", "Closed", "box", "write", "decline", "close", "end"});
    EXPECT_EQ(files().size(), 2u);
    EXPECT_TRUE(offered().empty());

    // From two days ago, and from the future, as after a clock was set back.
    const std::string root = recoveryFolder() + "/discarded/";
    const long long now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    fs::remove_all(root);
    for (const long long then : {now - 2 * 24 * 60 * 60, now + 1000}) {
        fs::create_directories(root + std::to_string(then) + "-x");
        overwrite(root + std::to_string(then) + "-x/Part.backup", "x");
    }
    finished({"forget", "new", "Closed", "box", "write", "decline", "close", "end"});
    ASSERT_EQ(files().size(), 1u);
    EXPECT_EQ(files()[0], "discarded/" + std::to_string(now + 1000) + "-x/Part.backup");
}

TEST_F(RecoveryFilesTest, WhatIsClosedWithoutAQuestionCanBeBroughtBack)
{
    const std::vector<std::string> back = finished(
        {"new", "Part", "box", "digest", "close", "recover", "dirty", "work", "list", "forget", "end"});
    ASSERT_EQ(back.size(), 5u);
    EXPECT_EQ(back[1], "event: left: \"Part\" was closed with unsaved changes.");
    EXPECT_EQ(back[3], back[0]);
    EXPECT_EQ(back[4], "dirty");
    EXPECT_EQ(finished({"recover"}).back(), back[0]) << "what was brought back and not saved";

    // A script that recovers everything: each one that is opened closes the previous one.
    std::filesystem::remove_all(recoveryFolder());
    killed("One");
    killed("Two");
    finished({"forget", "no-loop", "recover", "close", "close", "end"});
    EXPECT_EQ(offered().size(), 2u);
}

TEST_F(RecoveryFilesTest, AFileIsBegunBehindTheFirstLineOfADocumentAndBehindASave)
{
    const std::string file = scratch("saved.tdsn");
    const auto killedAfter = [&](Steps steps) {
        steps.insert(steps.end(), {"line", "digest", "until-kept", "die"});
        const auto result = run(steps);
        EXPECT_EQ(result.signal, SIGKILL) << result.output << result.errors;
        return lastOf(result.output, "digest");
    };
    const std::string first = killedAfter({"new", "Part"});
    EXPECT_EQ(finished({"recover"}).back(), first);
    fs::remove_all(recoveryFolder());
    const std::string saved = killedAfter({"new", "Part", "line", "write", "save", file});
    EXPECT_EQ(finished({"recover"}).back(), saved);
}

TEST_F(RecoveryFilesTest, AFileThatIsFinishedWhenNobodyNeedsItAnyMoreGoes)
{
    finished({"new", "Part", "line", "until-kept", "save", scratch("saved.tdsn")});
    EXPECT_TRUE(offered().empty());
    finished({"forget", "new", "Part", "line", "until-kept", "end"});
    EXPECT_TRUE(files().empty());
}

TEST_F(RecoveryFilesTest, AFileSaysWhatWasBeingWorkedOn)
{
    const std::string source = scratch("Quelle ä.tdsn");
    EXPECT_EQ(
        run({"new", "Part", "box", "save", source, "box", "write", "name", "Renamed", "write", "die"}).signal,
        SIGKILL);
    ASSERT_EQ(offered().size(), 1u);
    EXPECT_TRUE(offered()[0].starts_with("file Renamed|" + source + "|TestDocType|last|")) << offered()[0];
    EXPECT_TRUE(offered()[0].ends_with("/Renamed.backup")) << offered()[0];

    // It is saved there again, unless somebody else has done so meanwhile.
    const std::string before = contentOf(source);
    overwrite(source, before + "x");
    EXPECT_EQ(finished({"recover", "path", source, "save-again"}).back(), "not saved");
    EXPECT_EQ(contentOf(source), before + "x");
}
