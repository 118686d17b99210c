// Sessions that are recorded and replayed.

#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptReplay.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/Types/Uuid.h"
#include "Tests/Support/Seed.h"
#include "Tests/UI/Commands/Recorded.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/filesystem/fstream.hpp>

#include <memory>
#include <random>
#include <regex>

namespace Vu::Commands {
namespace {

namespace fs = boost::filesystem;
using Vs::TranscriptMgr;

class TranscriptTest : public CommandsTests::Recorded
{
protected:
    static std::string narrowed(const std::wstring& text) { return Vs::Strings::narrow(text); }
};

TEST_F(TranscriptTest, ASessionComesBackWithItsModelItsSelectionAndItsCamera)
{
    for (const wchar_t* name : {L"session.txt", L"session.py"}) {
        closeAll();
        record(name);
        answer(L"Design.New");
        answer(L"Design.Box 20 30 40");
        answer(L"Design.Cylinder 5 10");
        answer(L"Selection.Select Cylinder1");
        answer(L"VuCommands.RenameCommand \"A \\\"new\\\" name\"");
        drag(kMiddleButton, 0, 0, 40, 10);
        answer(L"Design.Sphere 3");
        answer(L"VuCommands.UndoCmd");
        failure(L"Design.Box none");
        answer(L"Selection.Add Box1");
        const std::wstring before = state();
        stop();
        EXPECT_EQ(stateAfter(name), before);
    }
}

/// Does something at random that leaves the session open.
class Anything
{
public:
    explicit Anything(unsigned seed) : m_random(seed) {}
    int upTo(int most) { return std::uniform_int_distribution(0, most)(m_random); }

    /// A line, or nothing for a mouse action.
    std::wstring line()
    {
        const auto size = [&] { return L' ' + std::to_wstring(1 + upTo(50)); };
        const auto part = [&] { return L" Box" + std::to_wstring(1 + upTo(3)); };
        switch (upTo(18)) {
        case 0:
        case 1:
            return L"Design.Box" + size() + size() + size();
        case 2:
            return L"Design.Cylinder" + size() + size() + L" 1,2,3.5";
        case 3:
            return L"Selection.Select" + part();
        case 4:
            return L"Selection.Add" + part() + part();
        case 5:
            return L"Selection.Clear";
        case 6:
            return L"VuCommands.RenameCommand \"new name " + std::to_wstring(upTo(99)) + L'"';
        case 7:
            return L"VuCommands.UndoCmd";
        case 8:
            return L"VuCommands.RedoCmd";
        case 9:
            return L"Commands.Start DeleteCommand";
        case 10:
            return L"Camera.ZoomIn 1." + std::to_wstring(1 + upTo(8));
        case 11:
            return L"Commands.Start FitCommand";
        case 12:
            return L"Design.Move" + part() + size() + size() + L" 0";
        case 13:
            return L"Design.Join" + part() + part();
        case 14:
            return L"Commands.Start MoveCommand";
        case 15:
            return L"Commands.SetInput Dx" + size();
        case 16:
            return L"Commands.Commit";
        default:
            return {};
        }
    }

private:
    std::mt19937 m_random;
};

/// Records a random session, and replays it.
class RandomSessionTest : public TranscriptTest
{
protected:
    void comesBack(unsigned seed)
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const std::wstring name = seed % 2 == 0 ? L"random.txt" : L"random.py";
        closeAll();
        Anything anything(seed);
        record(name);
        answer(L"Design.New");
        for (int i = 0; i < 40; ++i)
            step(anything);
        // Nothing of a tool is recorded before it is committed.
        if (!activeKey().empty())
            answer(L"Commands.Cancel");
        stop();
        const std::wstring before = state();
        ASSERT_EQ(stateAfter(name), before) << boost::algorithm::join(linesOf(name), "\n");
    }

private:
    static constexpr int kRange = 60; ///< Of the mouse, in pixels from the middle.

    void step(Anything& anything)
    {
        const int x = anything.upTo(kRange), y = anything.upTo(kRange);
        if (const std::wstring line = anything.line(); !line.empty())
            run(line); // Some fail, as some of a user's do.
        else if (anything.upTo(2) == 0)
            click(kLeftButton, x, y);
        else if (anything.upTo(1) == 0)
            drag(kMiddleButton, anything.upTo(30), 0, x, y);
        else
            scroll(anything.upTo(1) == 0 ? 120 : -120, x, y);
        Application::get()->processEvents();
    }
};

TEST_F(RandomSessionTest, ComesBack)
{
    // Cameras that moved while a tool ran that was cancelled, and one that was fitted to its preview.
    for (const unsigned seed : {1652181046u, 2424000702u})
        comesBack(seed);
    const unsigned first = TestSupport::seed();
    for (unsigned seed = first; seed < first + 12; ++seed)
        comesBack(seed);
}

TEST_F(RandomSessionTest, ComesBackInAWindow)
{
    const CommandsTests::SmallWindow window;
    const unsigned first = TestSupport::seed();
    for (unsigned seed = first; seed < first + 4; ++seed)
        comesBack(seed);
    closeAll();
}

TEST_F(TranscriptTest, WhatWasFramedIsSeenAlikeInAnyWindowAndInNone)
{
    struct Shown
    {
        int width, height; // 0 for no window.
    };
    constexpr Shown kShown[] = {{0, 0}, {420, 300}, {640, 700}};
    const auto window = [](const Shown& shown) {
        return shown.width > 0 ? std::make_unique<CommandsTests::SmallWindow>(shown.width, shown.height)
                               : nullptr;
    };
    const std::vector<std::wstring> framing = {L"Commands.Start FitCommand", L"NamedView.RestoreCamera Right",
                                               L"Selection.Select Box2",     L"Commands.Start FindInCanvas",
                                               L"Camera.ZoomIn 1.5",         L"Design.Box 5 5 5 90,0,0",
                                               L"Commands.Start FitCommand"};
    for (const Shown& recorded : kShown) {
        // Also if the recording ends with a fit.
        for (size_t count = 0; count <= framing.size(); ++count) {
            const auto within = window(recorded);
            record(L"framed.txt");
            answer(L"Design.New");
            answer(L"Design.Box 60 20 10");
            answer(L"Design.Box 2 2 2 70,0,0");
            for (size_t i = 0; i < count; ++i)
                answer(framing[i]);
            stop();
            const std::wstring before = state();
            closeAll();
            for (const Shown& replayed : kShown) {
                SCOPED_TRACE(testing::Message()
                             << recorded.width << " to " << replayed.width << ", " << count);
                const auto other = window(replayed);
                EXPECT_EQ(stateAfter(L"framed.txt"), before);
                closeAll();
            }
        }
    }
}

TEST_F(TranscriptTest, LinesAreWhatWasDoneAndNotHow)
{
    record(L"lines.txt");
    answer(L"Design.New");
    const std::string identifier = narrowed(Vs::fromUuid(activeDocument()->identifier()));
    const std::string guid = narrowed(Vs::fromUuid(activeSession()->asset()->guid()));
    answer(L"Design.Box 1 2 3 4,5,6");
    answer(L"Commands.Start BoxCommand Dx=1 Dy=2 Dz=3");
    answer(L"Document.SaveAs \"" + file(L"saved.vlra") + L'"');
    answer(L"Asset.List");
    answer(L"Selection.Select Box1 Box2");
    answer(L"Design.Move Box2 1 \"1/2 in\" 3");
    answer(L"Design.Fillet 0.5 Box1/Edge1 Box1/Edge2");
    answer(L"Design.Colour #102030 Box1");
    answer(L"Camera.ZoomIn");
    answer(L"Transcripting.Stop");
    const std::vector<std::string> expected = {
        "Design.New",
        "Transcripting.Document " + identifier + ' ' + guid,
        "Design.Box 1 2 3 4,5,6",
        "Design.Box 1 2 3",
        "VuCommands.SaveDocumentAsCmd " + identifier + " saved.vlra",
        "Asset.List",
        "Selection.Select Box1 Box2",
        "Design.Move Box2 1 \"1/2 in\" 3",
        "Design.Fillet 0.5 Box1/Edge1|Box1/Edge2",
        "Design.Colour \"#102030\" Box1",
        "Camera.ZoomIn",
    };
    std::vector<std::string> lines = linesOf(L"lines.txt");
    // Where the first box was framed, wherever the lines are replayed.
    ASSERT_GT(lines.size(), 3u);
    EXPECT_TRUE(lines[3].starts_with("Camera.Set ")) << lines[3];
    EXPECT_FALSE(std::regex_search(lines[3], std::regex("[0-9]{11}|[0-9.]{12}"))) << lines[3];
    lines.erase(lines.begin() + 3);
    EXPECT_EQ(lines, expected);
}

TEST_F(TranscriptTest, ATranscriptMayReplayAnotherAndIsThenOneLineOfARecording)
{
    fs::ofstream(fs::path(file(L"inner.txt"))) << "Design.Box 1 2 3\nDesign.Nothing\n";
    fs::ofstream(fs::path(file(L"outer.txt")))
        << "Design.New\nTranscripting.Replay inner.txt\nDesign.Sphere 1\n";
    Vs::Status status;
    record(L"recorded.txt");
    TranscriptMgr::get()->replay(file(L"outer.txt"), status, Vs::kTextTranscript);
    EXPECT_TRUE(status.matchingError("outer.txt:2: ")) << status.matchingError("");
    EXPECT_TRUE(status.matchingError("inner.txt:2: There is no text command"));
    fs::ofstream(fs::path(file(L"inner.txt"))) << "Design.Box 1 2 3\n";
    answer(L"Transcripting.Replay \"" + file(L"inner.txt") + L'"');
    stop();
    const std::vector<std::string> lines = linesOf(L"recorded.txt");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "Design.New");
    // What the failed line has framed.
    EXPECT_TRUE(lines[1].starts_with("Camera.Set ")) << lines[1];
    EXPECT_EQ(lines[2], "Transcripting.Replay inner.txt") << "from beside it";

    fs::ofstream(fs::path(file(L"self.txt"))) << "# a snake\nTranscripting.Replay self.txt\n";
    EXPECT_NE(failure(L"Transcripting.Replay \"" + file(L"self.txt") + L'"').find(L"it cannot replay itself"),
              std::wstring::npos);
}

TEST_F(TranscriptTest, AnswersToQuestionsAreRecordedAndGivenAgain)
{
    answer(L"Design.New");
    answer(L"Design.Box 1 1 1");
    record(L"close.txt");
    answerBoxes(1);
    answer(L"Document.Close");
    MessageBox::responder(nullptr);
    stop();
    ASSERT_EQ(documents(), 0u);
    const std::vector<std::string> lines = linesOf(L"close.txt");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_TRUE(lines[0].starts_with("# When this was recorded, ")) << lines[0];
    EXPECT_TRUE(lines[1].starts_with("Transcripting.Answer ")) << lines[1];

    answer(L"Design.New");
    answer(L"Design.Box 1 1 1");
    Vs::Status status;
    TranscriptMgr::get()->replay(file(L"close.txt"), status, Vs::kTextTranscript);
    EXPECT_EQ(documents(), 0u) << "nobody was there to be asked";
    EXPECT_TRUE(status.isOk()) << narrowed(status.toString());
    // An answer that no question of its line asked for is a failure of that line, and discarded.
    fs::ofstream(fs::path(file(L"stale.txt"))) << "Transcripting.Answer 1\nDesign.New\nDesign.Box 1 1 1\n"
                                                  "Document.Close\n";
    TranscriptMgr::get()->replay(file(L"stale.txt"), status, Vs::kTextTranscript);
    EXPECT_TRUE(status.matchingError("stale.txt:2: The answer"));
    EXPECT_EQ(documents(), 1u);
    answer(L"Design.Box 1 1 1");
    answer(L"Transcripting.Answer 1");
    answer(L"Asset.List");
    run(L"Document.Close");
    EXPECT_EQ(documents(), 1u) << "where lines are typed as well";
    answer(L"Transcripting.Answer 1");
    answer(L"Document.Close");
    EXPECT_EQ(documents(), 0u);
}

} // namespace
} // namespace Vu::Commands
