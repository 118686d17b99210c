#include "UI/Base/Window/CommandBox.h"

#include "Server/Base/TextCommandMgr.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QtTest/QTest>

using namespace Vu;

namespace {

class BoxArea : public Vs::TextCommandSubjectArea
{
public:
    BoxArea() : TextCommandSubjectArea(L"BoxTest", L"Commands for the tests of the command box", false) {}
    Vs::PythonModuleInit pythonEntry() override { return nullptr; }
};

class BoxCommand : public Vs::TextCommand
{
public:
    BoxCommand(const wchar_t* name, unsigned status, std::wstring answer)
        : TextCommand(L"BoxTest", name, L"For a test", "%s", false, true),
          m_status(status),
          m_answer(std::move(answer))
    {
    }
    Vs::TextCommandResult execute(const Vs::TextCommandParameters&) override { return {m_status, m_answer}; }
    Vs::PythonFunction pythonEntry() override { return nullptr; }

private:
    unsigned m_status;
    std::wstring m_answer;
};

class CommandBoxTest : public UiTest
{
protected:
    CommandBoxTest()
    {
        UIBaseOptionGroup::get()->commandHistory({});
        Application::get()->needGui();
        box = std::make_unique<CommandBox>(nullptr);
        box->show();
    }
    void type(const char* text) { QTest::keyClicks(box->edit(), QString::fromUtf8(text)); }
    void press(Qt::Key key) { QTest::keyClick(box->edit(), key); }
    std::string line() const { return box->edit()->text().toStdString(); }
    std::string answer() const { return box->answer()->text().toStdString(); }

    BoxArea area;
    BoxCommand say{L"SayHello", 0, L"Hello."};
    BoxCommand many{L"SayMore", 0, L"One\nTwo"};
    BoxCommand fail{L"Fail", 1, L"It went wrong."};
    std::unique_ptr<CommandBox> box;
};

} // namespace

TEST_F(CommandBoxTest, TabCompletesAsFarAsTheCandidatesAgreeAndThenStepsThroughThem)
{
    type("BoxTest.Sa");
    EXPECT_TRUE(box->popup()->isVisible());
    EXPECT_EQ(box->popup()->count(), 2);
    press(Qt::Key_Tab);
    EXPECT_EQ(line(), "BoxTest.Say");
    press(Qt::Key_Tab);
    EXPECT_EQ(box->popup()->currentRow(), 0);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(line(), "BoxTest.SayMore ");
    EXPECT_FALSE(box->popup()->isVisible());
}

TEST_F(CommandBoxTest, ASingleCandidateIsTakenWholeAndTabOnNothingKeepsTheLine)
{
    type("BoxTest.F");
    press(Qt::Key_Tab);
    EXPECT_EQ(line(), "BoxTest.Fail ");
    box->edit()->clear();
    press(Qt::Key_Tab);
    EXPECT_EQ(line(), "");
    type("boxtest.SAY");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(line(), "BoxTest.SayHello ") << "in the case that runs";
    box->edit()->clear();
    const FunctionCommandDef command(L"BoxTestCommand", [](CommandContext&) {});
    type("Commands.Start boxtest");
    press(Qt::Key_Tab);
    EXPECT_EQ(line(), "Commands.Start BoxTestCommand ");
    box->edit()->clear();
    type("NoSuchArea.X");
    press(Qt::Key_Tab);
    EXPECT_EQ(line(), "NoSuchArea.X");
}

TEST_F(CommandBoxTest, ALineThatFailsStaysWithTheReasonUntilItIsChanged)
{
    type("BoxTest.Fail");
    press(Qt::Key_Return);
    EXPECT_TRUE(box->failed());
    EXPECT_EQ(line(), "BoxTest.Fail");
    EXPECT_EQ(answer(), "It went wrong.");
    EXPECT_TRUE(box->answer()->isVisible());
    type("x");
    EXPECT_FALSE(box->failed());
    EXPECT_FALSE(box->answer()->isVisible());
}

TEST_F(CommandBoxTest, AnAnswerTakesThePlaceOfTheLineAndALongOneGetsRoom)
{
    box->edit()->setText("BoxTest.SayHello");
    box->run();
    EXPECT_EQ(line(), "");
    EXPECT_EQ(answer(), "Hello.");
    box->edit()->setText("BoxTest.SayMore");
    box->run();
    EXPECT_EQ(box->output()->toPlainText().toStdString(), "One\nTwo");
    EXPECT_TRUE(box->output()->isVisible());
    EXPECT_FALSE(box->answer()->isVisible());
    press(Qt::Key_Escape);
    EXPECT_FALSE(box->output()->isVisible());
}

TEST_F(CommandBoxTest, UpAndDownGoThroughTheHistoryAndBackToWhatWasTyped)
{
    for (const char* text : {"BoxTest.SayHello one", "BoxTest.SayHello two", "BoxTest.SayHello one"}) {
        box->edit()->setText(text);
        box->run();
    }
    box->edit()->setText("unfinished");
    press(Qt::Key_Up);
    EXPECT_EQ(line(), "BoxTest.SayHello one");
    press(Qt::Key_Up);
    EXPECT_EQ(line(), "BoxTest.SayHello two");
    press(Qt::Key_Up);
    EXPECT_EQ(line(), "BoxTest.SayHello two") << "a line run twice is kept once";
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(line(), "unfinished");
    press(Qt::Key_Down);
    EXPECT_EQ(line(), "unfinished");
}

TEST_F(CommandBoxTest, AnEmptyBoxShowsTheLineOfTheLastClickAndUpBringsItIntoTheBox)
{
    FunctionCommandDef click(L"BoxTestClick", [](CommandContext&) {});
    const auto hint = [&] { return box->edit()->placeholderText().toStdString(); };
    const std::string usual = hint();
    click.runByHand(ECommandAccessPoint::Toolbar);
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(hint(), "Commands.Start BoxTestClick");
    press(Qt::Key_Up);
    EXPECT_EQ(line(), "Commands.Start BoxTestClick");
    press(Qt::Key_Return);
    EXPECT_EQ(line(), "");
    EXPECT_EQ(hint(), usual) << "what was typed isn't shown again as if it were clicked";
    CommandContext context = CommandContext::activeContext();
    context.accessPoint(ECommandAccessPoint::Command);
    EXPECT_TRUE(click.executeCommand(context).isOk());
    EXPECT_EQ(hint(), usual) << "nor is what a command runs";
}

TEST_F(CommandBoxTest, TheHistoryOutlivesTheBox)
{
    box->edit()->setText("BoxTest.SayHello kept");
    box->run();
    box = std::make_unique<CommandBox>(nullptr);
    press(Qt::Key_Up);
    EXPECT_EQ(line(), "BoxTest.SayHello kept");
}

TEST_F(CommandBoxTest, ALineThatClosesItsWindowIsRememberedAllTheSame)
{
    class Close : public BoxCommand
    {
    public:
        explicit Close(std::unique_ptr<CommandBox>& box) : BoxCommand(L"Close", 0, L""), m_box(box) {}
        Vs::TextCommandResult execute(const Vs::TextCommandParameters&) override
        {
            m_box.reset();
            return {0, L"Closed."};
        }

    private:
        std::unique_ptr<CommandBox>& m_box;
    } close(box);
    type("BoxTest.Close now");
    box->run();
    ASSERT_EQ(box, nullptr);
    EXPECT_EQ(UIBaseOptionGroup::get()->commandHistory(), std::vector<std::wstring>{L"BoxTest.Close now"});
}

TEST_F(CommandBoxTest, PythonIsTypedStatementByStatementWithAHistoryOfItsOwn)
{
    const auto output = [&] { return box->output()->toPlainText().toStdString(); };
    const auto prompt = [&] { return box->language()->text().toStdString(); };
    type("BoxTest.SayHello x");
    press(Qt::Key_Return);
    type(">>>");
    ASSERT_TRUE(box->takesPython());
    EXPECT_EQ(line(), "");
    type("answer = 6 * 7");
    press(Qt::Key_Return);
    type("answer");
    press(Qt::Key_Return);
    EXPECT_EQ(output(), ">>> answer = 6 * 7\n>>> answer\n42");
    type("for i in range(2):");
    press(Qt::Key_Return);
    EXPECT_EQ(prompt(), "...");
    EXPECT_EQ(line(), "    ");
    type("print('row', i)");
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    EXPECT_EQ(prompt(), ">>>");
    EXPECT_TRUE(output().ends_with("row 0\nrow 1")) << output();
    type("answ");
    press(Qt::Key_Tab);
    EXPECT_EQ(line(), "answer");
    type(".bit_l");
    press(Qt::Key_Tab);
    EXPECT_EQ(line(), "answer.bit_length");
    press(Qt::Key_Escape);
    press(Qt::Key_Up);
    EXPECT_EQ(line(), "    print('row', i)");
    // Errors are shown, and a statement can be abandoned.
    press(Qt::Key_Escape);
    type("1 / 0");
    press(Qt::Key_Return);
    EXPECT_NE(output().find("ZeroDivisionError"), std::string::npos);
    type("if answer:");
    press(Qt::Key_Return);
    press(Qt::Key_Escape);
    EXPECT_EQ(prompt(), ">>>");
    EXPECT_FALSE(box->failed());
    press(Qt::Key_Backspace);
    EXPECT_FALSE(box->takesPython());
    press(Qt::Key_Up);
    EXPECT_EQ(line(), "BoxTest.SayHello x");
    press(Qt::Key_Escape);
    box->language()->click();
    EXPECT_TRUE(box->takesPython());
    type("import sys; sys.exit()");
    press(Qt::Key_Return);
    EXPECT_FALSE(box->takesPython());
}
