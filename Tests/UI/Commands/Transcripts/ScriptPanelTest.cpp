#include "Server/Base/PythonManager.h"
#include "Server/Base/ScriptDebugger.h"
#include "Server/Base/Status.h"
#include "Tests/UI/Commands/Recorded.h"
#include "Tests/UI/Commands/Transcripts/Debugging.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Commands/Transcripts/Macros.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QTimer>
#include <QToolButton>
#include <QtTest/QTest>

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <memory>

namespace Vu::Commands {
namespace {

namespace fs = boost::filesystem;

constexpr const char* kNested = "Design.Box 1 1 1\n# nothing\nDesign.Box 2 2 2\n";
constexpr const char* kPython = "from quillet import design\n\ndef two():\n    design.box(3, 3, 3)\n"
                                "    design.box(4, 4, 4)\n\ntwo()\ntwo()\n";

class ScriptPanelTest : public CommandsTests::Debugging
{
protected:
    void TearDown() override
    {
        m_panel.reset();
        Debugging::TearDown();
    }

    /// What an area of that kind shows.
    QWidget* panel() const { return m_panel.get(); }
    void press(const char* name)
    {
        QTest::mouseClick(panel()->findChild<QToolButton*>(QLatin1String(name)), Qt::LeftButton);
        run(L"");
    }
    QPlainTextEdit* lines() const { return panel()->findChild<QPlainTextEdit*>(); }
    void cursorTo(int line)
    {
        lines()->setTextCursor(QTextCursor(lines()->document()->findBlockByNumber(line - 1)));
    }
    /// Loads the script into the panel.
    void open(const std::wstring& path)
    {
        if (!m_panel) {
            answer(L"Debug.ShowDebugDialog"); // Which both show the same.
            m_panel.reset(AreaContents::make("ScriptPanel", nullptr));
            m_panel->resize(400, 400);
            m_panel->show();
        }
        fileDialogAnswers(path);
        press("ScriptOpen");
    }
    /// Where the run has stood within its lines while the button was pressed again and again, at most so
    /// many times, and `also` was called each time before.
    std::string pressedUntilItEnds(const char* name, int most, const std::function<void()>& also = {})
    {
        return stoodDuring([this, name] { press(name); }, name, most, also);
    }
    std::string stoodDuring(const std::function<void()>& work, const char* name, int most,
                            const std::function<void()>& also = {})
    {
        std::string stood;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (!Vs::ScriptDebugger::get()->waits())
                return;
            stood +=
                fs::path(debug().scriptPath()).stem().string() + std::to_string(debug().stepLine() + 1) + ' ';
            if (also)
                also();
            QTest::mouseClick(
                panel()->findChild<QToolButton*>(QLatin1String(--most > 0 ? name : "ScriptContinue")),
                Qt::LeftButton);
        });
        timer.start(1);
        work();
        return stood;
    }

    static std::string content(const std::wstring& path)
    {
        fs::ifstream stream(fs::path(path), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

    std::unique_ptr<QWidget> m_panel;
};

TEST_F(ScriptPanelTest, ThePanelStepsIntoTheTranscriptsAndScriptsThatAScriptRuns)
{
    script(L"nested.txt", kNested);
    script(L"inner.py", kPython);
    open(script(L"outer.txt",
                "Design.New\nTranscripting.Replay nested.txt\nScript.Run inner.py\nDesign.New\n"));
    EXPECT_EQ(pressedUntilItEnds("ScriptInto", 99), "") << "a line that runs no file";
    EXPECT_TRUE(debug().isStepLine(2));
    // The dialog shows what the panel does.
    QPlainTextEdit* shown = scriptText();
    EXPECT_EQ(pressedUntilItEnds("ScriptInto", 99,
                                 [&] {
                                     EXPECT_EQ(lines()->toPlainText().toStdString(), kNested);
                                     EXPECT_EQ(shown->toPlainText().toStdString(), kNested);
                                 }),
              "nested1 nested3 ");
    EXPECT_EQ(debug().scriptPath(), file(L"outer.txt"));
    EXPECT_TRUE(debug().isStepLine(3));
    EXPECT_EQ(pressedUntilItEnds("ScriptInto", 99),
              "inner1 inner3 inner7 inner4 inner5 inner8 inner4 inner5 ");
    EXPECT_TRUE(debug().isStepLine(4));
    press("ScriptStop");
    EXPECT_TRUE(debug().isStepLine(1));
}

TEST_F(ScriptPanelTest, ThePanelRunsToBreakpointsToTheCursorAndOutOfAFunction)
{
    open(script(L"alone.py", kPython));
    answer(L"Design.New");
    cursorTo(5);
    QTest::keyClick(lines(), Qt::Key_F9);
    EXPECT_TRUE(debug().isBreakPoints(5));
    EXPECT_EQ(pressedUntilItEnds("ScriptContinue", 99), "alone5 alone5 ");
    EXPECT_EQ(pressedUntilItEnds("ScriptOut", 2), "alone5 alone8 alone5 ");
    QTest::keyClick(lines(), Qt::Key_F9);
    EXPECT_EQ(pressedUntilItEnds("ScriptOver", 99), "alone3 alone7 alone8 ");
    cursorTo(8);
    EXPECT_EQ(pressedUntilItEnds("ScriptToCursor", 99), "alone8 ");

    const std::wstring nested = script(L"nested.txt", kNested);
    open(script(L"outer.txt",
                "Design.New\nTranscripting.Replay nested.txt\nTranscripting.Replay nested.txt\n"));
    // A breakpoint of a file that the script runs stays its own.
    EXPECT_EQ(pressedUntilItEnds("ScriptInto", 1), "");
    EXPECT_EQ(pressedUntilItEnds("ScriptInto", 1, [] { debug().addBreakPoint(3); }),
              "nested1 nested3 nested3 ");
    EXPECT_FALSE(debug().isBreakPoints(3));
    EXPECT_TRUE(debug().isBreakPointOf(nested, 3));
}

TEST_F(ScriptPanelTest, ThePanelStopsAScriptWhileItWaits)
{
    open(script(L"endless.py", "while True:\n    pass\n"));
    EXPECT_EQ(pressedUntilItEnds("ScriptOver", 9,
                                 [this] {
                                     if (debug().isStepLine(2))
                                         press("ScriptStop");
                                 }),
              "endless2 ");
    EXPECT_FALSE(Vs::ScriptDebugger::get()->running());
    EXPECT_TRUE(debug().isStepLine(1));
    m_panel.reset();
    script(L"endless.py", "first = 1\nsecond = 2\n");
    debug().addBreakPoint(2);
    Vs::ScriptDebugger::get()->go(Vs::ScriptGo::Continue);
    EXPECT_FALSE(Vs::ScriptDebugger::get()->running()) << "nobody could tell it to go on";
}

TEST_F(ScriptPanelTest, ThePanelSavesWhatIsTypedAndKeepsItsPlaceWhenTheFileChanges)
{
    const std::wstring path = script(L"edited.txt", "# 1\r\n# 2\r\n# 3\r\n");
    open(path);
    press("ScriptOver");
    cursorTo(3);
    QTest::keyClick(lines(), Qt::Key_F9);
    cursorTo(1);
    QTest::keyClicks(lines(), "# 0");
    QTest::keyClick(lines(), Qt::Key_Return);
    EXPECT_TRUE(debug().isStepLine(3)) << "the mark stays with its line";
    EXPECT_TRUE(debug().isBreakPoints(4));
    QTest::keyClick(lines(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(content(path), "# 0\r\n# 1\r\n# 2\r\n# 3\r\n");
    EXPECT_EQ(debug().scriptLines(), 4);

    cursorTo(4);
    script(L"edited.txt", "# 1\n# 2\n# 3\n");
    EXPECT_TRUE(QTest::qWaitFor([this] { return lines()->blockCount() == 4; }));
    EXPECT_TRUE(debug().isStepLine(2));
    EXPECT_TRUE(debug().isBreakPoints(3));
    script(L"edited.txt", "# 1\n# 2\n# a\n# b\n# c\n# 3\n");
    EXPECT_TRUE(QTest::qWaitFor([this] { return lines()->blockCount() == 7; }));
    EXPECT_TRUE(debug().isStepLine(2));
    EXPECT_TRUE(debug().isBreakPoints(6));
    EXPECT_EQ(lines()->textCursor().blockNumber() + 1, 6);

    QTest::keyClicks(lines(), "# mine ");
    script(L"edited.txt", "# theirs\n");
    auto* reload = panel()->findChild<QPushButton*>(QStringLiteral("ScriptReload"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return reload->isVisible(); }));
    press("ScriptContinue");
    EXPECT_EQ(content(path), "# theirs\n") << "nobody has said which text counts";
    EXPECT_TRUE(debug().isStepLine(2));
    QTest::mouseClick(reload, Qt::LeftButton);
    EXPECT_EQ(lines()->toPlainText(), QStringLiteral("# theirs\n"));
    EXPECT_FALSE(reload->isVisible());
}

TEST_F(ScriptPanelTest, ThePlaceIsKeptWhereTheFileHasChangedAtSeveralPlaces)
{
    open(script(L"edited.txt", "# 1\n# 2\n# a\n# b\n# c\n# 3\n"));
    press("ScriptOver");
    press("ScriptOver");
    cursorTo(4);
    for (const int line : {4, 6})
        debug().addBreakPoint(line);
    script(L"edited.txt", "# 0\n# 1\n# 2\n# a!\n# b\n# c\n# d\n# e\n# 3\n# 4");
    EXPECT_TRUE(QTest::qWaitFor([this] { return lines()->blockCount() == 10; }));
    EXPECT_TRUE(lines()->toPlainText().endsWith(QStringLiteral("# c\n# d\n# e\n# 3\n# 4")));
    EXPECT_TRUE(debug().isStepLine(4));
    EXPECT_TRUE(debug().isBreakPoints(5));
    EXPECT_TRUE(debug().isBreakPoints(9));
    EXPECT_EQ(lines()->textCursor().blockNumber() + 1, 5);
    script(L"edited.txt", "# 0\n# b\n# 3");
    EXPECT_TRUE(QTest::qWaitFor([this] { return lines()->blockCount() == 3; }));
    EXPECT_TRUE(debug().isBreakPoints(2));
    EXPECT_TRUE(debug().isBreakPoints(3));
    EXPECT_EQ(lines()->toPlainText(), QStringLiteral("# 0\n# b\n# 3"));
}

TEST_F(ScriptPanelTest, WhatIsStartedElsewhereWaitsAtItsBreakpointsAndShowsWhereItStops)
{
    const CommandsTests::SmallWindow window;
    const std::wstring macro = script(L"macro.txt", kNested), alone = script(L"alone.py", kPython);
    open(macro);
    debug().addBreakPoint(3);
    open(alone);
    debug().addBreakPoint(5);
    const std::wstring other = script(L"other.txt", "Design.New\n");
    open(other);
    EXPECT_FALSE(debug().isBreakPoints(5)) << "the breakpoints of another file";
    answer(L"Design.New");
    const auto during = [&](const std::wstring& line) {
        return stoodDuring([&] { answer(line); }, "ScriptContinue", 99,
                           [&] {
                               EXPECT_FALSE(button("DebugLoad")->isEnabled());
                               click("DebugStep"); // The dialog sends it on as the panel does.
                               EXPECT_FALSE(Vs::ScriptDebugger::get()->waits());
                           });
    };
    EXPECT_EQ(during(L"Transcripting.Replay \"" + macro + L'"'), "macro3 ");
    EXPECT_EQ(during(L"Script.Run \"" + alone + L'"'), "alone5 alone8 alone5 ");
    EXPECT_EQ(debug().scriptPath(), other);
    EXPECT_TRUE(button("DebugLoad")->isEnabled());

    const auto shows = [&](const std::wstring& path) {
        return debug().scriptPath() == path && debug().isStepLine(2);
    };
    const auto state = [this] {
        return panel()->findChild<QLabel*>(QStringLiteral("scriptState"))->text().toStdString();
    };
    const std::wstring bad = script(L"bad.txt", "Design.New\nDesign.Fillet 1\nDesign.New\n");
    failure(L"Transcripting.Replay \"" + bad + L'"');
    EXPECT_TRUE(shows(bad));
    EXPECT_EQ(state(), "Stands before line 2");
    const std::wstring raises = script(L"raises.py", "x = 1\nraise ValueError(x)\n");
    failure(L"Script.Run \"" + raises + L'"');
    EXPECT_TRUE(shows(bad)) << "somebody is in the midst of it";
    press("ScriptStop");
    failure(L"Script.Run \"" + raises + L'"');
    EXPECT_TRUE(shows(raises));
    EXPECT_EQ(state(), "Stopped at line 2");
}

TEST_F(ScriptPanelTest, TheEndOfTheProgramAsksAboutTextThatIsNotSaved)
{
    const std::wstring path = script(L"edited.txt", "# 1\n");
    open(path);
    const auto mayEnd = [this](int button) {
        answerBoxes(button);
        Vs::Status status;
        return Vs::PythonAutorunScripts::get()->fireClosingDown(status);
    };
    EXPECT_TRUE(mayEnd(2));
    EXPECT_TRUE(boxes().empty()) << "nothing has been edited";
    QTest::keyClicks(lines(), "# 0 ");
    EXPECT_FALSE(mayEnd(2));
    EXPECT_TRUE(mayEnd(1));
    EXPECT_EQ(content(path), "# 1\n");
    EXPECT_TRUE(mayEnd(0));
    EXPECT_EQ(content(path), "# 0 # 1\n");
    EXPECT_EQ(boxes().size(), 3u);
}

TEST_F(ScriptPanelTest, EditMacroLoadsTheChosenMacroAndShowsThePanel)
{
    const std::wstring file = Macros::fileOf(L"Plate").wstring();
    Macros::folder(true);
    fs::ofstream(fs::path(file)) << "Design.New\n";
    const CommandsTests::SmallWindow window;
    CommandDefinition* edit = definition(L"EditMacroCommand");
    auto* list = Vs::cast<ListControl>(edit->inputControl());
    ASSERT_TRUE(list);
    CommandContext context = CommandContext::activeContext();
    edit->updateInputControl(&context);
    ASSERT_EQ(list->items().size(), 1u);
    list->selectedItem(list->items().front(), true);
    run(L"");
    EXPECT_EQ(debug().scriptPath(), file);
    EXPECT_TRUE(UIBaseOptionGroup::get()->wantToShowScriptPanel());
    UIBaseOptionGroup::get()->wantToShowScriptPanel(false);
    fs::remove_all(Macros::folder(false));
}

} // namespace
} // namespace Vu::Commands
