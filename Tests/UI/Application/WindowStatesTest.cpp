// Pictures of the window in each of its states, in both looks and both languages: the real program on a
// display, as a user has it.

#include "Tests/Support/Process.h"

#include <QImage>

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <vector>

namespace {

namespace fs = boost::filesystem;

struct State
{
    const char* name;
    std::vector<std::string> lines; ///< That lead to it from the previous one.
};

std::string tool(const char* command)
{
    return std::string("Commands.Start ") + command;
}

const State kStates[] = {
    {"home", {}},
    {"document", {"Design.Sample"}},
    {"part", {"Selection.Select Post"}},
    {"move", {tool("MoveCommand")}},
    {"rotate", {"Commands.Cancel", tool("RotateCommand")}},
    {"mirror", {"Commands.Cancel", tool("MirrorCommand")}},
    {"linear pattern", {"Commands.Cancel", tool("LinearPatternCommand")}},
    {"circular pattern", {"Commands.Cancel", tool("CircularPatternCommand")}},
    {"subtract", {"Commands.Cancel", tool("SubtractCommand")}},
    {"fillet", {"Commands.Cancel", tool("FilletCommand")}},
    {"chamfer", {"Commands.Cancel", tool("ChamferCommand")}},
    {"colour", {"Commands.Cancel", tool("ColourCommand")}},
    {"measure", {"Commands.Cancel", tool("MeasureCommand")}},
    {"palette", {"Commands.Cancel", tool("SearchCommandsCommand")}},
    {"feed", {tool("SearchCommandsCommand"), tool("ShowDesignFeedCommand")}},
    {"four views", {tool("SplitViewLayoutCommand") + " Layout=Quad"}},
};

/// By the states' names; empty ones if the program produced none.
using Pictures = std::map<std::string, QImage>;

class WindowStatesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "NOTICE: no display to show a window on";
    }

    static Pictures take(const std::string& theme, const std::string& language)
    {
        const TestSupport::ScratchFolder folder;
        fs::create_directories(folder.path() / "profile" / "options");
        static_cast<void>(folder.write("profile/options/UIBase.json", "{\"theme\":\"" + theme + "\"}"));
        std::vector<std::string> arguments{"--profile-dir", (folder.path() / "profile").string()};
        const auto line = [&](const std::string& text) {
            arguments.insert(arguments.end(), {"--command", text});
        };
        const auto file = [&](const char* state) { return folder.path() / (std::string(state) + ".png"); };
        for (const State& state : kStates) {
            std::ranges::for_each(state.lines, line);
            line("View.SaveWindow " + TestSupport::quoted(file(state.name)));
        }
        line("VuCommands.ExitApplicationCmd");
        const auto run = TestSupport::runProcess(
            (TestSupport::runningTree() / "bin/quillet").string(), arguments,
            {.input = {}, .environment = {"LANGUAGE=" + language, "LANG=C.UTF-8"}, .secondsLimit = 300});
        EXPECT_EQ(run.exitCode, 0) << run.output << run.errors;
        Pictures pictures;
        for (const State& state : kStates)
            pictures[state.name] = QImage(QString::fromStdString(file(state.name).string()));
        return pictures;
    }
    /// Of the menu bar, which every state has.
    static int lightness(const QImage& picture)
    {
        constexpr int kAtTheEnd = 40, kInTheBar = 6;
        return qGray(picture.pixel(picture.width() - kAtTheEnd, kInTheBar));
    }
};

TEST_F(WindowStatesTest, EachStateLooksDifferentInEitherThemeAndLanguage)
{
    std::map<std::string, Pictures> english;
    for (const auto& [theme, least, most] : {std::tuple("light", 200, 255), std::tuple("dark", 0, 80)}) {
        english[theme] = take(theme, "en");
        const Pictures german = take(theme, "de");
        const QImage* before = nullptr;
        for (const State& state : kStates) {
            SCOPED_TRACE(std::string(theme) + ", " + state.name);
            const QImage& picture = english[theme][state.name];
            ASSERT_FALSE(picture.isNull());
            EXPECT_GE(picture.width(), 800);
            EXPECT_GE(lightness(picture), least);
            EXPECT_LE(lightness(picture), most);
            EXPECT_TRUE(!before || *before != picture) << "as the state before";
            EXPECT_EQ(german.at(state.name).size(), picture.size()) << "words don't change the window";
            EXPECT_NE(german.at(state.name), picture);
            before = &picture;
        }
    }
}

} // namespace
