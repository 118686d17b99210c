// Random lines in immediate succession, as in a script: without the pause in which deferred work is done.

#include "Server/Base/TextCommandMgr.h"
#include "Tests/Support/Seed.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

#include <algorithm>
#include <iterator>
#include <random>

using namespace Vu;
using namespace Vu::Commands;

namespace {

using RandomLinesTest = CommandsTests::WithProgram;

TEST_F(RandomLinesTest, MeetNothingThatIsGone)
{
    std::mt19937 random(TestSupport::seed());
    const auto below = [&](size_t bound) {
        return std::uniform_int_distribution<size_t>(0, bound - 1)(random);
    };
    emptyScratch(L"random");
    static constexpr const wchar_t* kLines[] = {
        L"Design.New",
        L"Design.New",
        L"Design.Box 1 1 1",
        L"Asset.Create VeloraAssetType",
        L"Asset.Close",
        L"Asset.List",
        L"Document.Save",
        L"Document.Close",
        L"Document.Close /CloseLast",
        L"Document.CloseAll",
        L"VuCommands.CloseDocumentCmd",
        L"VuCommands.CloseAllDocumentsCmd",
        L"VuCommands.CycleOpenDocumentsCmd",
        L"Commands.Start CycleOpenDocumentsCommand",
        L"Commands.Start AssetShellCommand",
        L"VuCommands.NextAssetCmd",
        L"VuCommands.PreviousAssetCmd",
        L"VuCommands.ManagementShellCmd",
        L"VuCommands.UndoCmd",
        L"VuCommands.RedoCmd",
        L"Commands.Start FitCommand",
        L"Commands.Start MoveCommand",
        L"Commands.Start OrbitCommand",
        L"Commands.Start MeasureCommand",
        L"Commands.Start DeleteCommand",
        L"Commands.Cancel",
        L"Commands.Commit",
        L"Selection.All",
        L"SplitView.Split Horizontal",
        L"Camera.ZoomIn",
        L"Script.BeginTransaction x",
        L"Script.CommitTransaction",
        L"Script.AbortTransaction",
        L"Script.Documents",
        L"Script.DiscardChanges",
        L"Script.Settle",
    };
    static constexpr const wchar_t* kLinesOfFiles[] = {L"Document.Open ", L"VuCommands.OpenDocumentCmd ",
                                                       L"Document.SaveAs ", L"Document.Activate "};
    constexpr int kSessions = 6, kLength = 500;
    const auto next = [&]() -> std::wstring {
        const size_t which = below(std::size(kLines) + std::size(kLinesOfFiles));
        return which < std::size(kLines) ? kLines[which]
                                         : kLinesOfFiles[which - std::size(kLines)] +
                                               scratch(L"random/" + std::to_wstring(below(3)) + L".vlra");
    };
    constexpr int kDontSave = 1, kAnswers = 3;
    for (int session = 0; session < kSessions; ++session) {
        answerBoxes(static_cast<int>(below(kAnswers)));
        for (int i = 0; i < kLength; ++i)
            Vs::TextCommandMgr::get()->executeCommandWithoutOutput(next());
        Application::get()->flushDeferredTasks();
        const std::vector<AssetSession*> alive = SessionMgr::get()->assetSessions();
        for (AssetSession* listed : SharedWorkflows::activeAssetShell()->assetSessions())
            EXPECT_NE(std::find(alive.begin(), alive.end(), listed), alive.end());
        answerBoxes(kDontSave);
        if (documents() > 0)
            run(L"Document.CloseAll");
        EXPECT_EQ(documents(), 0u);
    }
}

} // namespace
