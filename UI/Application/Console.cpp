#include "UI/Application/Console.h"

#include "Server/Base/PythonManager.h"
#include "Server/Base/SiblingLibrary.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TextCompletion.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/TranscriptSecrets.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Application/LineRunner.h"
#include "UI/Application/Terminal.h"
#include "UI/Base/Program/Application.h"

#include <QEventLoop>
#include <QSocketNotifier>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Quillet {
namespace {

std::string where(size_t line)
{
    return "<stdin>:" + std::to_string(line);
}

/// Waits for standard input while windows and queues stay alive. Returns false when the program is to end.
bool waitForInput()
{
    Vu::Application* application = Vu::Application::get();
    application->processEvents();
    if (application->exiting())
        return false;
    if (Vu::Application::headless()) {
        pollfd input = {STDIN_FILENO, POLLIN, 0};
        constexpr int kMoment = 20, kForever = -1; // milliseconds
        // Nothing else will save what the last line changed.
        while (true) {
            const int found = ::poll(&input, 1, Vs::AutoSaveController::get()->work() ? kMoment : kForever);
            if (found > 0 || (found < 0 && errno != EINTR))
                return true;
        }
    }
    QEventLoop loop;
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &loop, &QEventLoop::quit);
    loop.exec();
    return !application->exiting();
}

void runTerminal(LineRunner& runner, const std::string& historyFile)
{
    size_t line = 0;
    const Terminal terminal{
        historyFile, &waitForInput,
        [&](const std::string& text) {
            runner.runWrittenLine(Vs::Strings::fromBytes(text), where(++line));
            runner.flush();
            return Vs::Strings::toBytes(Vs::TranscriptSecrets::hidden(Vs::Strings::fromBytes(text)));
        },
        [](const std::string& beginning) {
            const std::wstring wide = Vs::Strings::fromBytes(beginning);
            std::vector<std::string> candidates;
            for (const std::wstring& one : Vs::TextCompletion::complete(wide, wide.size()))
                candidates.push_back(Vs::Strings::toBytes(one));
            return candidates;
        },
        [] { return "quillet> "; }};
    const Vs::SiblingLibrary editor("libQuilletTerminal.so");
    editor.function<decltype(&quilletRunTerminal)>("quilletRunTerminal")(terminal);
}

/// Lines from a pipe or a file: no prompt, and the first failure ends it unless told otherwise.
class PipeConsole
{
public:
    explicit PipeConsole(LineRunner& runner) : m_runner(runner) {}

    bool run()
    {
        while (waitForInput() && readSome())
            ;
        return m_goOn;
    }

private:
    /// Returns false at the end.
    bool readSome()
    {
        char buffer[1 << 16];
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count < 0) {
            if (errno == EINTR || errno == EAGAIN)
                return true;
            m_goOn =
                m_runner.fail(std::string("<stdin>: Lines cannot be read: ") + std::strerror(errno) + '.');
            return false;
        }
        if (count == 0) {
            if (!m_rest.empty())
                runLine(std::exchange(m_rest, {}));
            m_runner.flush();
            return false;
        }
        m_rest.append(buffer, static_cast<size_t>(count));
        size_t begin = 0;
        for (size_t end; m_goOn && !Vu::Application::get()->exiting() &&
                         (end = m_rest.find('\n', begin)) != std::string::npos;
             begin = end + 1)
            runLine(m_rest.substr(begin, end - begin));
        m_rest.erase(0, begin);
        m_runner.flush();
        return m_goOn;
    }

    void runLine(std::string line)
    {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        m_goOn = m_runner.runWrittenLine(Vs::Strings::fromBytes(line), where(++m_line));
    }

    LineRunner& m_runner;
    std::string m_rest;
    size_t m_line = 0;
    bool m_goOn = true;
};

bool isTerminal()
{
    return isatty(STDIN_FILENO) && isatty(STDOUT_FILENO);
}

bool runPythonPipe(LineRunner& runner)
{
    std::string code;
    char buffer[1 << 16];
    while (waitForInput()) {
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count > 0)
            code.append(buffer, static_cast<size_t>(count));
        else if (count == 0 || (errno != EINTR && errno != EAGAIN))
            break;
    }
    Vs::Status status;
    Vs::TranscriptMgr::Run run;
    Vs::PythonManager::get()->runString(Vs::Strings::fromBytes(code), status);
    if (const std::wstring left = run.end(); !left.empty())
        status.addError(left);
    runner.flush();
    return status.isOk() || runner.fail(Vs::Strings::narrow(status.toString()));
}

void runPythonTerminal(LineRunner& runner, const std::string& historyFile)
{
    const Vs::TranscriptMgr::Run run;
    Vs::PythonManager* python = Vs::PythonManager::get();
    bool goesOn = false;
    Terminal terminal;
    terminal.historyFile = historyFile;
    terminal.wait = &waitForInput;
    terminal.run = [&](const std::string& text) {
        Vs::Status status;
        goesOn = python->consoleLine(Vs::Strings::fromBytes(text), status);
        // A script that calls sys.exit has set the exit code.
        terminal.ended = status.isError() || Vu::Application::get()->exiting();
        runner.flush();
        return text;
    };
    terminal.complete = [&](const std::string& beginning) {
        std::vector<std::string> candidates;
        for (const std::wstring& one : python->completions(Vs::Strings::fromBytes(beginning)))
            candidates.push_back(Vs::Strings::toBytes(one));
        return candidates;
    };
    terminal.prompt = [&] { return goesOn ? "... " : ">>> "; };
    // The first line should not have to wait for the interpreter.
    Vs::Status status;
    python->consoleLine({}, status);
    const Vs::SiblingLibrary editor("libQuilletTerminal.so");
    editor.function<decltype(&quilletRunTerminal)>("quilletRunTerminal")(terminal);
}

} // namespace

bool runPythonConsole(LineRunner& runner, const std::string& historyFile)
{
    if (!isTerminal())
        return runPythonPipe(runner);
    runPythonTerminal(runner, historyFile);
    return true;
}

bool runConsole(LineRunner& runner, const std::string& historyFile)
{
    if (!isTerminal())
        return PipeConsole(runner).run();
    runTerminal(runner, historyFile);
    return true;
}

} // namespace Quillet
