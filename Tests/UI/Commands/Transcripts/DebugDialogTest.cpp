#include "UI/Commands/Transcripts/DebugDialog.h"

#include "Tests/UI/Commands/Transcripts/Debugging.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Commands/Transcripts/ReplayTasks.h"

#include <QApplication>
#include <QDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QtTest/QTest>

#include <boost/filesystem/fstream.hpp>

namespace Vu::Commands {
namespace {

namespace fs = boost::filesystem;

class DebugDialogTest : public CommandsTests::Debugging
{
protected:
    static QWidget* numbers(QPlainTextEdit* text)
    {
        return text->findChild<QWidget*>(QStringLiteral("LineNumbers"));
    }
    static QImage pictureOf(QWidget* widget) { return widget->grab().toImage(); }
    /// The colour in the middle of the marks of a line.
    static QColor markOf(QPlainTextEdit* text, int line)
    {
        const int height = text->fontMetrics().height();
        const int top = static_cast<int>(text->document()->documentMargin()) +
                        (line - 1) * text->fontMetrics().lineSpacing();
        return pictureOf(numbers(text)).pixelColor(3, top + height / 2);
    }
};

TEST_F(DebugDialogTest, LinesShowAndHideItAndItsPlaceIsKept)
{
    EXPECT_EQ(dialog(), nullptr);
    answer(L"Debug.ShowDebugDialog /on");
    ASSERT_NE(dialog(), nullptr);
    EXPECT_FALSE(applicable(L"ShowDebugDialogCommand"));
    EXPECT_TRUE(applicable(L"HideDebugDialogCommand"));
    EXPECT_EQ(dialog()->geometry().topLeft(), QPoint(400, 300));
    EXPECT_TRUE(dialog()->windowFlags().testFlags(Qt::WindowFlags(0x0A041000)));
    dialog()->move(120, 60);
    const QPoint moved = dialog()->geometry().topLeft();
    answer(L"Debug.ShowDebugDialog"); // A second window in place of the first, which was never hidden.
    EXPECT_EQ(dialog()->geometry().topLeft(), QPoint(400, 300));
    dialog()->move(120, 60);
    answer(L"Debug.ShowDebugDialog /off");
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_TRUE(applicable(L"ShowDebugDialogCommand"));
    EXPECT_EQ(DebugDialog::savedPos(), (Vs::Point2{moved.x(), moved.y()}));
    DebugDialog::savePos({-2000, 0});
    EXPECT_EQ(DebugDialog::savedPos(), (Vs::Point2{400, 300}));
}

TEST_F(DebugDialogTest, ItsCloseButtonHidesItForGoodAndDestroyingItOnlyUntilAShellComes)
{
    answer(L"Debug.ShowDebugDialog");
    dialog()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_FALSE(DebugDialog::savedShowState());

    answer(L"Debug.ShowDebugDialog");
    answer(L"Commands.Start DestroyDebugDialogCommand");
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_TRUE(DebugDialog::savedShowState());
    ShellMgr* shells = WorkspaceMgr::activeWorkspace()->shellManager();
    Shell* home = shells->activeShell();
    shells->pop();
    shells->activeShell(home);
    EXPECT_NE(dialog(), nullptr);
    shells->pop();
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_TRUE(DebugDialog::savedShowState());
    shells->activeShell(home);
}

TEST_F(DebugDialogTest, ItCoversNoDialogThatWaitsForAnAnswer)
{
    answer(L"Debug.ShowDebugDialog");
    ASSERT_TRUE(dialog());
    {
        QDialog waiting;
        waiting.setModal(true);
        waiting.show();
        Application::get()->processEvents();
        EXPECT_FALSE(dialog());
    }
    Application::get()->processEvents();
    EXPECT_TRUE(dialog());
}

TEST_F(DebugDialogTest, ItsButtonsRecordAndReplay)
{
    answer(L"Debug.ShowDebugDialog");
    EXPECT_FALSE(button("TranscriptStop")->isEnabled());
    fileDialogAnswers({});
    click("TranscriptNormal");
    EXPECT_TRUE(button("TranscriptNormal")->isEnabled()) << "the file dialog was cancelled";
    fileDialogAnswers(file(L"a.txt"));
    click("TranscriptPerformance");
    EXPECT_TRUE(Vs::TranscriptMgr::get()->recording());
    EXPECT_FALSE(button("TranscriptNormal")->isEnabled());
    EXPECT_FALSE(button("TranscriptPerformance")->isEnabled());
    EXPECT_FALSE(button("TranscriptReplay")->isEnabled());
    answer(L"Design.New");
    click("TranscriptStop");
    EXPECT_FALSE(Vs::TranscriptMgr::get()->recording());
    EXPECT_TRUE(button("TranscriptReplay")->isEnabled());
    fs::ifstream stream{fs::path(file(L"a.txt"))};
    std::string first, last, line;
    while (first.empty() || first.starts_with('#'))
        ASSERT_TRUE(std::getline(stream, first));
    while (std::getline(stream, line))
        last = line;
    EXPECT_EQ(first, "Performance.StartPerformanceValidation");
    EXPECT_EQ(last, "Performance.EndPerformanceValidation");

    fileDialogAnswers(script(L"b.txt", "Design.New\n"));
    const unsigned before = documents();
    click("TranscriptReplay");
    EXPECT_EQ(documents(), before + 1);
    fileDialogAnswers(file(L"none.txt"));
    click("TranscriptReplay");
    EXPECT_EQ(documents(), before + 1);
}

TEST_F(DebugDialogTest, TheScriptHasANumberForEachLineAndRoomForThem)
{
    answer(L"Debug.ShowDebugDialog");
    fileDialogAnswers(script(L"nine.txt", "#1\n#2\n#3\n#4\n#5\n#6\n#7\n#8\n"));
    click("DebugLoad");
    QPlainTextEdit* text = scriptText();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(debug().scriptLines(), 8);
    EXPECT_EQ(text->blockCount(), 9);
    const int digit = text->fontMetrics().horizontalAdvance(QLatin1Char('8'));
    ASSERT_NE(numbers(text), nullptr);
    EXPECT_EQ(numbers(text)->sizeHint(), QSize(digit + 15, 0));
    fileDialogAnswers(script(L"ten.txt", "#1\r\n#2\n#3\n#4\n#5\n#6\n#7\n#8\n#9\n#10"));
    click("DebugLoad");
    EXPECT_EQ(debug().scriptLines(), 10);
    EXPECT_EQ(numbers(text)->sizeHint(), QSize(2 * digit + 15, 0));
    fileDialogAnswers(file(L"none.txt"));
    click("DebugLoad");
    EXPECT_EQ(debug().scriptPath(), file(L"ten.txt"));
}

TEST_F(DebugDialogTest, ItStepsContinuesAndRestartsAndShowsWhereItStands)
{
    answer(L"Debug.ShowDebugDialog");
    click("DebugRestart"); // Without a script nothing happens.
    fileDialogAnswers(script(L"steps.txt", "Design.New\n# nothing\nDesign.New\nDesign.New\n"));
    click("DebugLoad");
    QPlainTextEdit* text = scriptText();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(markOf(text, 1), QColor(Qt::green));
    EXPECT_EQ(markOf(text, 2), QColor(Qt::lightGray));
    click("DebugStep");
    EXPECT_EQ(documents(), 1u);
    EXPECT_EQ(markOf(text, 1), QColor(Qt::lightGray));
    EXPECT_EQ(markOf(text, 2), QColor(Qt::green));

    const int fourth =
        static_cast<int>(text->document()->documentMargin()) + text->fontMetrics().lineSpacing() * 7 / 2;
    QTest::mouseClick(numbers(text), Qt::LeftButton, Qt::NoModifier, QPoint(5, fourth));
    EXPECT_TRUE(debug().isBreakPoints(4));
    EXPECT_EQ(markOf(text, 4), QColor(Qt::red));
    click("DebugContinue");
    EXPECT_EQ(documents(), 2u);
    EXPECT_TRUE(debug().isStepLine(4));
    click("DebugContinue");
    EXPECT_EQ(documents(), 3u);
    click("DebugRestart");
    EXPECT_EQ(documents(), 5u) << "break points stay";
    QTest::mouseClick(numbers(text), Qt::LeftButton, Qt::NoModifier, QPoint(5, fourth));
    EXPECT_FALSE(debug().isBreakPoints(4));
}

TEST_F(DebugDialogTest, TheScriptGoesAndComesWithTheDialog)
{
    answer(L"Debug.ShowDebugDialog");
    ASSERT_NE(scriptText(), nullptr);
    EXPECT_TRUE(UIBaseOptionGroup::get()->showDebugScriptWidget());
    answer(L"Debug.ShowDebugDialog /off");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window(QStringLiteral("Script")), nullptr);
    answer(L"Debug.ShowDebugDialog");
    EXPECT_NE(window(QStringLiteral("Script")), nullptr);
}

TEST_F(DebugDialogTest, TheTasksAreKnownByTheirNames)
{
    const ReplayTranscriptTask replay(L"");
    const StepReplayTextTranscriptTask step;
    const auto* name = Vs::UniqueString::find("ReplayTranscriptTask");
    EXPECT_EQ(replay.getInterfaceId(), name);
    EXPECT_EQ(replay.queryInterface(name), &replay);
    EXPECT_EQ(step.queryInterface(name), nullptr);
    EXPECT_NE(step.queryInterface(Vs::Task::interfaceId()), nullptr);
    EXPECT_EQ(replay.priority(), 1);
}

} // namespace
} // namespace Vu::Commands
