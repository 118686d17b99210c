#include "UI/Application/CommandLine.h"

#include <gtest/gtest.h>

using namespace Quillet;

namespace {

TEST(CommandLineTest, StepsKeepTheOrderInWhichTheyWereGiven)
{
    const CommandLine line = parseCommandLine({"--command", "A.B", "--replay", "one.txt", "--command", "C.D",
                                               "--script", "two.py", "--console", "--command=E.F"});
    ASSERT_EQ(line.error, "");
    ASSERT_EQ(line.steps.size(), 6u);
    const std::vector<Step::Kind> kinds = {Step::Kind::Command, Step::Kind::Replay,  Step::Kind::Command,
                                           Step::Kind::Script,  Step::Kind::Console, Step::Kind::Command};
    const std::vector<std::string> texts = {"A.B", "one.txt", "C.D", "two.py", "", "E.F"};
    for (size_t i = 0; i < kinds.size(); ++i) {
        EXPECT_EQ(line.steps[i].kind, kinds[i]);
        EXPECT_EQ(line.steps[i].text, texts[i]);
    }
}

TEST(CommandLineTest, FilesAndSettingsAreToldApartFromOptions)
{
    const CommandLine line =
        parseCommandLine({"a b.step", "--set", "model=x=y", "--set", "empty=", "--headless", "--profile-dir",
                          "/tmp/p", "--", "--odd.stl"});
    EXPECT_EQ(line.error, "");
    EXPECT_EQ(line.files, (std::vector<std::string>{"a b.step", "--odd.stl"}));
    EXPECT_EQ(line.parameters, (std::map<std::string, std::string>{{"model", "x=y"}, {"empty", ""}}));
    EXPECT_EQ(line.profileDirectory, "/tmp/p");
    EXPECT_TRUE(line.headless);
    EXPECT_FALSE(line.keepGoing);

    // Links are recognized by their prefix, whatever follows; after "--" there are only files.
    const CommandLine handed =
        parseCommandLine({"--hand-over", "quillet:ticket/x --script /tmp/y.py", "a.step", "--", "quillet:b"});
    EXPECT_EQ(handed.links, std::vector<std::string>{"quillet:ticket/x --script /tmp/y.py"});
    EXPECT_EQ(handed.files, (std::vector<std::string>{"a.step", "quillet:b"}));
    EXPECT_TRUE(handed.steps.empty());
    EXPECT_NE(parseCommandLine({"--headless", "quillet:ticket/x"}).error, "");

    const std::vector<std::string> files =
        parseCommandLine({"file:///tmp/a%20b%C3%BC.step", "file://localhost/c%FF.stl", "file://server/d",
                          "file.step", "--", "file:///e"})
            .files;
    EXPECT_EQ(files, (std::vector<std::string>{"/tmp/a bü.step", "/c\xff.stl", "file://server/d", "file.step",
                                               "file:///e"}));
}

TEST(CommandLineTest, ATestRunHasItsOptions)
{
    const TestRun run = parseCommandLine({"--test", "models", "--jobs", "3", "--shard", "2/5", "--timeout",
                                          "1.5", "--junit", "r.xml", "--set", "a=b", "--headless"})
                            .test;
    EXPECT_EQ(run.directory, "models");
    EXPECT_EQ(run.jobs, 3);
    EXPECT_EQ(run.shard, 2);
    EXPECT_EQ(run.shards, 5);
    EXPECT_EQ(run.secondsLimit, 1.5);
    EXPECT_EQ(run.junitFile, "r.xml");
    EXPECT_EQ(run.parameters.at("a"), "b");
    EXPECT_EQ(run.references, "compare");
    EXPECT_EQ(parseCommandLine({"--test=d", "--references", "update"}).test.references, "update");
    EXPECT_EQ(parseCommandLine({"--references", "fill", "--replay", "a.txt"}).references, "fill");
}

TEST(CommandLineTest, ShortFormsAreLinesOfARunWithoutAWindow)
{
    const CommandLine exported = parseCommandLine({"a.step", "--export", "b c.stl", "--command", "A.B"});
    EXPECT_EQ(exported.error, "");
    EXPECT_TRUE(exported.headless);
    ASSERT_EQ(exported.steps.size(), 2u);
    EXPECT_EQ(exported.steps[0].text, "Design.Export \"b c.stl\"");
    EXPECT_EQ(exported.steps[1].text, "A.B");

    EXPECT_EQ(parseCommandLine({"--info", "a.step", "b.step"}).infoLine, "Design.Info");
    EXPECT_EQ(parseCommandLine({"a.step", "--info", "--json", "--density", "7.85"}).infoLine,
              "Design.Info 7.85 /Json");

    const CommandLine drawn = parseCommandLine({"--thumbnail", "a.step", "256", "--", "-b.png"});
    EXPECT_EQ(drawn.error, "");
    EXPECT_TRUE(drawn.headless);
    EXPECT_EQ(drawn.files, std::vector<std::string>{"a.step"});
    ASSERT_EQ(drawn.steps.size(), 1u);
    EXPECT_EQ(drawn.steps[0].text, "Design.Picture 256 -b.png");
}

TEST(CommandLineTest, WrongUsageIsNamed)
{
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--info"},
                                                  {"--json", "a.step"},
                                                  {"--density", "1", "a.step"},
                                                  {"--info", "--density", "heavy", "a.step"},
                                                  {"--info", "--density", "0", "a.step"},
                                                  {"--thumbnail", "a.step", "b.png"},
                                                  {"--thumbnail", "a.step", "big", "b.png"},
                                                  {"--thumbnail", "a.step", "1", "b.png", "c"},
                                                  {"--export", "a.stl", "--hand-over", "a.step"},
                                                  {"--export=a.stl", "--test=d"}})
        EXPECT_NE(parseCommandLine(wrong).error, "") << wrong.front();

    EXPECT_NE(parseCommandLine({"--nonsense"}).error.find("nonsense"), std::string::npos);
    EXPECT_NE(parseCommandLine({"--command"}).error, "");
    EXPECT_NE(parseCommandLine({"--set", "novalue"}).error.find("novalue"), std::string::npos);
    EXPECT_NE(parseCommandLine({"--set", "=value"}).error, "");
    EXPECT_NE(parseCommandLine({"--profile-dir", ""}).error, "");
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--junit=x"},
                                                  {"--test="},
                                                  {"--test=d", "--jobs=0"},
                                                  {"--test=d", "--jobs=two"},
                                                  {"--test=d", "--shard=3/2"},
                                                  {"--test=d", "--shard=0/2"},
                                                  {"--test=d", "--shard=1"},
                                                  {"--test=d", "--shard=1/2/3"},
                                                  {"--test=d", "--timeout=-1"},
                                                  {"--references=all"},
                                                  {"--filter=x"},
                                                  {"--list"},
                                                  {"--test=d", "--failed"},
                                                  {"--test=d", "--retry=0"},
                                                  {"--test=d", "file"},
                                                  {"--test=d", "--", "file"},
                                                  {"--test=d", "--replay=a.txt"},
                                                  {"--test=d", "--command=x"},
                                                  {"--test=d", "--keep-going"},
                                                  {"--test=d", "--profile-dir=p"},
                                                  {"--hand-over", "--headless", "file"},
                                                  {"--hand-over", "--command=x", "file"}})
        EXPECT_NE(parseCommandLine(wrong).error, "") << wrong.back();
}

} // namespace
