#include "Server/Base/Progress.h"
#include "Server/Base/PythonManager.h"
#include "Server/Base/Strings.h"
#include "Tests/Server/Base/ProbeCommand.h"

#include <csignal>
#include <gtest/gtest.h>

namespace {

/// A command with its own entry, like those of the add-ins.
class EntryCommand : public Vs::PythonEntry<EntryCommand, ProbeCommand>
{
public:
    EntryCommand() : PythonEntry(L"Python", L"Own", L"Answers with what it got.", "%s%d") {}
};

/// Commands stay known to Python as long as it runs, so these outlive the single tests.
struct Commands
{
    ProbeArea area{L"Python", true};
    ProbeCommand call{L"Python", L"Call", L"Answers with what it got."};
    EntryCommand own;
};

class PythonTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { s_commands = new Commands; }
    static void TearDownTestSuite()
    {
        Vs::PythonManager::get()->shutdown();
        delete s_commands;
    }

    PythonTest() { Vs::TextCommandMgr::get()->output(&output); }
    ~PythonTest() override { Vs::TextCommandMgr::get()->output(nullptr); }

    /// The result of the code, or "error: " and the message.
    std::wstring run(const std::string& code)
    {
        Vs::Status status;
        const std::wstring result = Vs::PythonManager::get()->runString(
            Vs::Strings::widen("import Python, quillet\n" + code), status);
        return status.isOk() ? result : L"error: " + status.toString();
    }
    std::wstring runFile(const boost::filesystem::path& path)
    {
        Vs::Status status;
        const std::wstring result = Vs::PythonManager::get()->runScriptFile(path.wstring(), status);
        return status.isOk() ? result : L"error: " + status.toString();
    }

    static Commands* s_commands;
    TestSupport::ScratchFolder folder;
    RecordingOutput output;
};

Commands* PythonTest::s_commands = nullptr;

TEST_F(PythonTest, CallsTextCommandsAsFunctionsOfTheirAreas)
{
    EXPECT_EQ(run("result = Python.Call('a b', 3, 0.1, None, -1e300, (1, 2.5, -3), Loud=True, Quiet=False)"),
              L"[a b][3][0.1][-1e+300][1,2.5,-3]/Loud");
    EXPECT_EQ(run("result = Python.Own('größe \"x\" /y', 7)"), L"[größe \"x\" /y][7]");
    EXPECT_EQ(run("import pathlib\nresult = Python.Call(pathlib.Path('/tmp') / 'x')"), L"[/tmp/x]");
    EXPECT_EQ(run("result = Python.Own.__doc__"), L"Answers with what it got.");
    EXPECT_EQ(run("result = quillet.run('Python.Call \"a b\" /Flag')"), L"[a b]/Flag");
}

TEST_F(PythonTest, RaisesCommandErrorWithTheReason)
{
    s_commands->call.status = 1;
    EXPECT_EQ(run("try:\n  Python.Call('why')\nexcept quillet.CommandError as e:\n  result = e"), L"[why]");
    EXPECT_EQ(run("try:\n  quillet.run('Python.Call x')\nexcept RuntimeError as e:\n  result = e"), L"[x]");
    s_commands->call.status = 0;
    EXPECT_EQ(run("Python.Own('a', 'b')"), L"error: <string>:2: quillet.CommandError: Python.Own: parameter "
                                           L"2 must be a whole number, not \"b\".");
    EXPECT_NE(run("Python.Call(object())").find(L"<string>:2: TypeError: "), std::wstring::npos);
    EXPECT_NE(run("Python.Call(Loud=1)").find(L"the keyword Loud is a flag"), std::wstring::npos);
}

TEST_F(PythonTest, NamesTheLineOfTheScriptThatFailed)
{
    folder.write("helper.py", "def helped():\n    return 1 / 0\n");
    const auto script = folder.write("script.py", "import helper\n\nhelper.helped()\n");
    EXPECT_EQ(runFile(script), L"error: " + script.wstring() + L":3: ZeroDivisionError: division by zero");
    const auto broken = folder.write("broken.py", "x = 1\nif x\n");
    EXPECT_EQ(runFile(broken), L"error: " + broken.wstring() + L":2: SyntaxError: expected ':'");
    for (const std::string& content : {std::string("a\0b", 3), std::string("\xff\xfe\xfa")})
        EXPECT_TRUE(
            runFile(folder.write("binary.py", content)).starts_with(L"error: " + folder.path().wstring()));
    EXPECT_NE(runFile(folder.path() / "none.py").find(L"none.py: The script cannot be read"),
              std::wstring::npos);
    EXPECT_NE(runFile(folder.path()).find(L"is a folder"), std::wstring::npos);
}

TEST_F(PythonTest, TellsATracebackAndTheErrorWhateverBecomesOfTheStatus)
{
    folder.write("inner.py", "def helped():\n    return 1 / 0\n");
    const auto script = folder.write("outer.py", "import inner\ninner.helped()\n");
    Vs::Status status;
    Vs::PythonManager::get()->runScriptFile(script.wstring(), status);
    EXPECT_TRUE(status.reported());
    const std::wstring at = folder.path().wstring() + L'/';
    EXPECT_TRUE(output.text.starts_with(L"error: Traceback (most recent call last):\nerror:   File \"" + at +
                                        L"outer.py\", line 2, in <module>\n"))
        << Vs::Strings::narrow(output.text);
    EXPECT_NE(output.text.find(at + L"inner.py\", line 2, in helped\n"), std::wstring::npos);
    EXPECT_TRUE(
        output.text.ends_with(L"error: " + at + L"outer.py:2: ZeroDivisionError: division by zero\n"));
    output.text.clear();
    runFile(folder.write("broken.py", "x = (\n"));
    EXPECT_NE(output.text.find(L"broken.py:1: SyntaxError: '(' was never closed"), std::wstring::npos);
    output.text.clear();
    runFile(folder.write("leaves.py", "import sys\nsys.exit(0)\n"));
    EXPECT_EQ(output.text, L"");
    runFile(at + L"none.py");
    EXPECT_EQ(output.text,
              L"error: " + at + L"none.py: The script cannot be read: No such file or directory.\n");
}

TEST_F(PythonTest, RefusesTextCommandsOnOtherThreads)
{
    EXPECT_EQ(run("import threading\n"
                  "told = []\n"
                  "def work():\n"
                  "  for call in (Python.Call, Python.Own, lambda: quillet.run('Python.Call')):\n"
                  "    try: call()\n"
                  "    except RuntimeError as e: told.append('main thread' in str(e))\n"
                  "t = threading.Thread(target=work); t.start(); t.join()\n"
                  "result = told"),
              L"[True, True, True]");
}

TEST_F(PythonTest, GivesEachScriptAFreshMainAndItsFolder)
{
    const auto script =
        folder.write("main.py", "import sys\n"
                                "assert __name__ == '__main__'\n"
                                "assert 'left' not in globals()\n"
                                "left = 1\n"
                                "result = [__file__ == sys.argv[0], sys.path.count(__file__[:-8])]\n");
    EXPECT_EQ(runFile(script), L"[True, 1]");
    EXPECT_EQ(runFile(script), L"[True, 1]");
    // Whatever it leaves of the interpreter's own state is restored.
    for (const char* vandal :
         {"sys.path = None", "del sys.path", "del sys.modules", "sys.modules = 3", "del sys.argv"}) {
        SCOPED_TRACE(vandal);
        runFile(folder.write("vandal.py", std::string("import sys\n") + vandal));
        EXPECT_EQ(runFile(script), L"[True, 1]");
    }
    run("kept = 5");
    EXPECT_EQ(run("result = kept"), L"5");
    EXPECT_EQ(run("pass"), L"");
}

TEST_F(PythonTest, HandsWhatIsPrintedToTheOutputLineByLine)
{
    EXPECT_EQ(run("import sys, threading\n"
                  "print('one', end='')\n"
                  "print(' two\\nthree')\n"
                  "print('größe', file=sys.stderr)\n"
                  "t = threading.Thread(target=lambda: print('four')); t.start(); t.join()\n"
                  "sys.stdout.write('five')"),
              L"");
    EXPECT_EQ(output.text, L"one two\nthree\nerror: größe\nfour\nfive\n");
}

TEST_F(PythonTest, NeverWaitsForAnAnswerNorEndsTheProcess)
{
    EXPECT_NE(run("input('name? ')").find(L"EOFError"), std::wstring::npos);
    EXPECT_EQ(run("import sys; sys.exit()"), L"");
    EXPECT_EQ(run("sys.exit(0)"), L"");
    EXPECT_EQ(run("sys.exit(3)"), L"error: <string>:2: The script ended with code 3");
    EXPECT_EQ(run("sys.exit('no model')"), L"error: <string>:2: no model");
    EXPECT_NE(run("def f(): f()\nf()").find(L"RecursionError"), std::wstring::npos);
    EXPECT_NE(run("class E(Exception):\n  def __str__(self): raise self\nraise E()").find(L"<string>:4: "),
              std::wstring::npos);
}

TEST_F(PythonTest, IsInterruptedByACancelRequestAndGoesOnAfterwards)
{
    s_commands->call.action = [] { Vs::Progress::requestCancel(); };
    EXPECT_EQ(run("Python.Call()\nwhile True: pass"), L"error: <string>:2: The script was cancelled.");
    s_commands->call.action = nullptr;
    Vs::Progress::requestCancel();
    EXPECT_EQ(run("result = sum(range(10000))"), L"49995000");
}

TEST_F(PythonTest, RunsScriptsFromInsideOfScripts)
{
    const auto inner =
        folder.write("inner.py", "result = Python.Call('in') if 'Python' in dir() else 'fresh'\n");
    std::wstring inside;
    s_commands->call.action = [&] {
        s_commands->call.action = nullptr;
        inside = runFile(inner);
    };
    EXPECT_EQ(run("x = 1\nPython.Call()\nresult = x"), L"1");
    EXPECT_EQ(inside, L"fresh");
    // The outer one can still be cancelled after an inner one has ended.
    s_commands->call.action = [&] {
        s_commands->call.action = [] { Vs::Progress::requestCancel(); };
        runFile(inner);
    };
    EXPECT_EQ(run("Python.Call()\nPython.Call()\nwhile True: pass"),
              L"error: <string>:3: The script was cancelled.");
    s_commands->call.action = nullptr;
}

TEST_F(PythonTest, AsksScriptsAndSitesBeforeTheApplicationCloses)
{
    struct Site : Vs::PythonAutorunEventSite
    {
        bool answer = true;
        bool closingDown(Vs::Status&) override { return answer; }
    } site;
    auto* scripts = Vs::PythonAutorunScripts::get();
    scripts->subscribe(&site);
    Vs::Status status;
    EXPECT_TRUE(scripts->fireClosingDown(status));
    run("stay = False\nquillet.on_closing_down(lambda: not stay)\nquillet.on_closing_down(lambda: None)");
    EXPECT_TRUE(scripts->fireClosingDown(status));
    run("stay = True");
    EXPECT_FALSE(scripts->fireClosingDown(status));
    ASSERT_EQ(status.warnings().size(), 1u);
    EXPECT_EQ(status.warnings().front(), L"<string>:3: This function keeps the program open.");
    run("stay = False");
    site.answer = false;
    EXPECT_FALSE(scripts->fireClosingDown(status));
    scripts->unsubscribe(&site);
    EXPECT_TRUE(status.isOk());
    EXPECT_EQ(run("def keep():\n  return False\nquillet.on('closing', keep)\nquillet.off('closing', keep)"),
              L"");
    EXPECT_NE(run("quillet.off('closed', keep)").find(L"no event \"closed\""), std::wstring::npos);
    run("quillet.on_closing_down(lambda: 1 / 0)");
    EXPECT_TRUE(scripts->fireClosingDown(status));
    EXPECT_TRUE(status.matchingError("ZeroDivisionError"));
    // One that adds others, for which the list of them has to grow.
    status = {};
    run("told = []\ndef more():\n  for i in range(1000):\n    quillet.on_closing_down(int)\n"
        "  return [[None] * 8 for i in range(1000)]\n"
        "quillet.on_closing_down(more)\nquillet.on_closing_down(lambda: told.append(1))");
    EXPECT_TRUE(scripts->fireClosingDown(status));
    EXPECT_EQ(run("result = told"), L"[1]");
    EXPECT_FALSE(status.matchingError("TypeError"));
}

} // namespace
