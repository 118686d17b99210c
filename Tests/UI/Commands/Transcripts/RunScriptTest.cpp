#include "Server/Base/PathInfo.h"
#include "Server/Base/PythonManager.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Document.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Transcripts/RunScriptCmd.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>
#include <QtTest/QTest>

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

namespace Vu::Commands {
namespace {

class Printed : public Vs::TextOutput
{
public:
    Printed() { Vs::TextCommandMgr::get()->output(this); }
    ~Printed() override { Vs::TextCommandMgr::get()->output(nullptr); }
    void message(const std::wstring& text) override { this->text += text + L'\n'; }
    void error(const std::wstring& text) override { this->text += L"error: " + text + L'\n'; }

    std::wstring text;
};

/// As defined by a script; what quillet.command defines stays to the end of the process.
class BroughtByScript : public Vs::Implements<BroughtByScript, CommandDefinition>
{
public:
    explicit BroughtByScript(Info* info) : Implements(info) { joinCommandGroup(CommandGroup::ScriptGroup()); }

    int runs = 0;

protected:
    CommandBase* onCreateCommand(CommandContext*) override
    {
        ++runs;
        return nullptr;
    }
};

class RunScriptTest : public CommandsTests::WithProgram
{
protected:
    // Python knows the commands, and must be shut down before them.
    static void TearDownTestSuite() { Vs::PythonManager::get()->shutdown(); }
    void TearDown() override
    {
        Application::testing(true);
        WithProgram::TearDown();
    }

    /// A script with this content; returns its path.
    static std::wstring script(const std::string& code)
    {
        const boost::filesystem::path path(scratch(L"script.py"));
        boost::filesystem::ofstream(path) << code;
        return path.wstring();
    }
    /// Has the file dialog answered with this name, or cancelled if it is empty.
    void answerDialog(const std::wstring& name)
    {
        Application::testing(false);
        FileDialog::responder(
            [this, name](const FileDialog::Request& request, std::vector<std::wstring>& names) {
                m_requests.push_back(request);
                names = {name};
                return !name.empty();
            });
    }

    std::vector<FileDialog::Request> m_requests;
    Printed m_printed;
};

TEST_F(RunScriptTest, AScriptThatIsNamedRunsWithoutADialogAfterEverythingThatWaits)
{
    answerDialog(L"");
    const std::wstring path = script("import Design\nDesign.New()\nprint('ran')\n");
    Application::get()->deferredTasks()->post([this] { m_printed.text += L"before\n"; });
    // A single line leaves the queue to whoever runs lines.
    EXPECT_EQ(
        Vs::TextCommandMgr::get()->executeCommandWithoutOutput(L"VuCommands.RunScriptCmd " + path).first, 0u);
    EXPECT_EQ(m_printed.text, L"");
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(m_printed.text, L"before\nran\n");
    EXPECT_EQ(documents(), 1u);
    EXPECT_TRUE(m_requests.empty());
}

TEST_F(RunScriptTest, TheListHasWhatScriptsBringAndThenTheScriptsOfTheFolder)
{
    namespace fs = boost::filesystem;
    const fs::path folder = Vs::PathInfo::scriptsDirectory(true);
    for (const char* name : {"autorun/start.py", "parts/bolt.py", "_helper.py", "notes.txt", "report.py"}) {
        fs::create_directories((folder / name).parent_path());
        fs::ofstream(folder / name) << "print('ran', '" << name << "')\n";
    }
    Info record(L"Script.ring", L"A Ring", nullptr);
    const BroughtByScript ring(&record);
    CommandDefinition* scripts = CommandDefinitionMgr::get()->findCommandDefinitionById(L"ScriptsCommand");
    ASSERT_TRUE(scripts);
    auto* list = Vs::cast<ListControl>(scripts->inputControl());
    CommandContext context = CommandContext::activeContext();
    scripts->updateInputControl(&context);
    std::vector<std::wstring> names;
    for (const Info* item : list->items())
        if (item->key() != ListControl::kSeparator)
            names.push_back(item->name());
    EXPECT_EQ(names, (std::vector<std::wstring>{L"A Ring", L"parts/bolt", L"report",
                                                L"Open the Folder of Scripts"}));
    for (const size_t chosen : {size_t(0), size_t(3)}) {
        list->selectedItem(list->items()[chosen], true);
        Application::get()->flushDeferredTasks();
        scripts->updateInputControl(&context);
    }
    EXPECT_EQ(ring.runs, 1);
    EXPECT_EQ(m_printed.text, L"ran report.py\n");
    fs::remove_all(folder);
}

TEST_F(RunScriptTest, WithoutANameAPersonIsAskedInTheFolderOfScripts)
{
    answerDialog(L"");
    answer(L"VuCommands.RunScriptCmd");
    EXPECT_EQ(m_printed.text, L"");
    ASSERT_EQ(m_requests.size(), 1u);
    EXPECT_EQ(m_requests[0].filter, L"Python files (*.py)");
    EXPECT_EQ(m_requests[0].caption, L"Open a script file to run");
    EXPECT_EQ(m_requests[0].initialPath, Vs::PathInfo::scriptsDirectory(false).wstring());
    EXPECT_TRUE(boost::filesystem::is_directory(m_requests[0].initialPath));

    const std::wstring path = script("print('chosen')\n");
    answerDialog(path);
    answer(L"VuCommands.RunScriptCmd");
    EXPECT_EQ(m_printed.text, L"chosen\n");
    answer(L"VuCommands.RunScriptCmd");
    // The next dialog starts in the last script's folder, and only that of scripts.
    EXPECT_EQ(m_requests.back().initialPath, boost::filesystem::path(path).parent_path().wstring());
    FileDialog::responder(nullptr);
    EXPECT_NE(failure(L"VuCommands.RunScriptCmd").find(L"no file name"), std::wstring::npos);
}

TEST_F(RunScriptTest, AnErrorOfTheScriptIsPrintedAndNotTheCommands)
{
    const std::wstring path = script("1 / 0\n");
    answer(L"VuCommands.RunScriptCmd " + path);
    EXPECT_NE(m_printed.text.find(path + L":1: ZeroDivisionError"), std::wstring::npos);
    RunScriptCmd::runsDirectly(true);
    EXPECT_NE(failure(L"VuCommands.RunScriptCmd " + path).find(L"ZeroDivisionError"), std::wstring::npos);
    RunScriptCmd::runsDirectly(false);
}

TEST_F(RunScriptTest, LinesOfAScriptFindTheWorkOfTheOnesBeforeDone)
{
    answer(L"Design.New");
    answer(L"VuCommands.RunScriptCmd " +
           script("import VuCommands, Asset\nVuCommands.CloseDocumentCmd()\nAsset.List()\n"));
    EXPECT_NE(m_printed.text.find(L"script.py:3: quillet.CommandError: There is no asset in memory."),
              std::wstring::npos);
}

TEST_F(RunScriptTest, TheTaskIsKnownByItsName)
{
    const RunPythonTask task(L"");
    EXPECT_EQ(task.getInterfaceId()->text(), "RunPythonTask");
    EXPECT_EQ(Vs::cast<RunPythonTask>(&task), &task);
    EXPECT_NE(Vs::cast<Vs::Task>(&task), nullptr);
    EXPECT_EQ(task.priority(), 1);
}

TEST_F(RunScriptTest, InAWindowAnEndlessScriptShowsWhatItPrintsAndEscapeEndsIt)
{
    Workspace* const before = WorkspaceMgr::activeWorkspace();
    Workspace* const workspace = WorkspaceMgr::get()->create();
    WorkspaceMgr::activeWorkspace(workspace);
    workspace->window()->show();
    QWidget* const window = workspace->window()->widget();
    const auto* const output = window->findChild<QPlainTextEdit*>(QStringLiteral("commandOutput"));
    ASSERT_NE(output, nullptr);
    // The answers of a transcript's lines are shown there, too.
    boost::filesystem::ofstream(boost::filesystem::path(scratch(L"lines.txt"))) << "Camera.ZoomIn\n";
    answer(L"Transcripting.Replay \"" + scratch(L"lines.txt") + L'"');
    EXPECT_TRUE(output->toPlainText().contains(QStringLiteral("Zoom in.")))
        << output->toPlainText().toStdString();
    // Cells that are longer than the stops of tabs stand in columns all the same.
    answer(L"Design.New");
    auto* const line = window->findChild<QLineEdit*>(QStringLiteral("commandLine"));
    line->setText(QStringLiteral("Asset.List"));
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_TRUE(
        output->toPlainText().contains(QStringLiteral("Active asset name is: Design  Document name: ") +
                                       QString::fromStdWString(activeDocument()->displayName()) +
                                       QStringLiteral("\nAsset name: Design            Hidden: false")))
        << output->toPlainText().toStdString();
    QTimer escape;
    QObject::connect(&escape, &QTimer::timeout, [&] {
        if (output->toPlainText().contains(QStringLiteral("turn 3")))
            QTest::keyClick(window, Qt::Key_Escape);
    });
    escape.start(10);
    for (const char* rest : {"pass", "time.sleep(0 if n < 5 else 3600)"}) {
        answer(L"VuCommands.RunScriptCmd " +
               script(std::string("import time\nn = 0\nwhile True:\n    n += 1\n"
                                  "    if n < 9: print('turn', n)\n    ") +
                      rest + '\n'));
        EXPECT_TRUE(m_printed.text.ends_with(L": The script was cancelled.\n")) << rest;
        EXPECT_TRUE(output->toPlainText().endsWith(QStringLiteral(": The script was cancelled."))) << rest;
    }
    WorkspaceMgr::get()->close(workspace);
    WorkspaceMgr::activeWorkspace(before);
}

} // namespace
} // namespace Vu::Commands
