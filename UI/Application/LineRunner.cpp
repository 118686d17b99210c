#include "UI/Application/LineRunner.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Progress.h"
#include "Server/Base/PythonManager.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptParameters.h"
#include "Server/Base/TranscriptReplay.h"
#include "Server/Base/TranscriptSecrets.h"
#include "Server/Base/Warning.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Validation/PerfTestingContext.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <cstdio>
#include <utility>

namespace Quillet {
namespace {

void write(std::FILE* stream, const std::string& text)
{
    const std::string shown = Vs::Strings::forTerminal(text);
    std::fwrite(shown.data(), 1, shown.size(), stream);
    std::fputc('\n', stream);
}

/// A user who started the program by clicking a file, or a replay by clicking a button, sees no terminal.
void tellInWindow(const std::wstring& failure)
{
    const Vu::WorkspaceWindow* window = Vu::WorkspaceWindow::activeWorkspaceWindow();
    if (window && window->shown())
        Vu::CommandMgr::get()->GetAlertController()->addAlert(Vu::EAlertSeverity::Error, failure);
}

class LineScope
{
public:
    explicit LineScope(std::atomic<bool>& runs) : m_runs(runs) { m_runs = true; }
    ~LineScope() { m_runs = false; }
    LineScope(const LineScope&) = delete;
    LineScope& operator=(const LineScope&) = delete;

private:
    std::atomic<bool>& m_runs;
};

} // namespace

LineRunner::LineRunner(Options options)
    : m_options(options), m_handler([this](const std::wstring& text) { warn(text); })
{
    Vs::TextCommandMgr::get()->output(this);
    Vu::PerfTestingContext::failureHandler([this](const std::wstring& text) {
        if (m_lineRuns)
            m_missedBounds.push_back(text);
        else if (Vs::TranscriptMgr::get()->replaying())
            tellInWindow(text);
    });
}

LineRunner::~LineRunner()
{
    tellWarnings();
    flush();
    Vu::PerfTestingContext::failureHandler(nullptr);
    Vs::TextCommandMgr::get()->output(nullptr);
}

bool LineRunner::openFile(const std::string& path)
{
    std::wstring failure;
    const bool goesOn =
        runLine(L"Document.Open " + Vs::Strings::quote(Vs::Strings::fromBytes(path)), path, &failure);
    if (!failure.empty())
        tellInWindow(failure);
    return goesOn;
}

bool LineRunner::runLine(const std::wstring& line, const std::string& where, std::wstring* failure)
{
    echo(line);
    const LineScope scope(m_lineRuns);
    const auto [status, text] = Vs::TranscriptMgr::get()->settled(
        [&] { return Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line); });
    if (status != 0 && failure)
        *failure = text;
    if (status != 0)
        return fail(where + ": " + Vs::Strings::narrow(text));
    if (!text.empty())
        message(text);
    tellWarnings();
    tellMissedBounds(where);
    return true;
}

bool LineRunner::runWrittenLine(const std::wstring& line, const std::string& where)
{
    const size_t start = line.find_first_not_of(L" \t");
    if (start == std::wstring::npos || line[start] == L'#' || line.find(L'$') == std::wstring::npos)
        return runLine(line, where);
    std::wstring filled;
    try {
        filled = Vs::substituteParameters(line, Vs::TranscriptMgr::get()->parameters());
    } catch (const Vs::Exception& error) {
        return fail(where + ": " + Vs::Strings::narrow(error.message()));
    }
    return runLine(filled, where);
}

bool LineRunner::replay(const std::string& path)
{
    Vs::ReplayOptions options;
    options.keepGoing = m_options.keepGoing;
    options.afterLine = [&](size_t line, unsigned) {
        tellWarnings();
        tellMissedBounds(line > 0 ? path + ':' + std::to_string(line) : path);
        // A line that ended the program is the last one.
        if (Vu::Application::get()->exiting())
            Vs::Progress::requestCancel();
    };
    if (m_options.echo)
        options.beforeLine = [this](const std::wstring& line) { echo(line); };
    const LineScope scope(m_lineRuns);
    const std::wstring file = Vs::Strings::fromBytes(path);
    const Vs::ReplayResult result =
        Vs::TranscriptMgr::get()->replay(file, Vs::TranscriptMgr::typeOf(file), options);
    if (result.cancelled && !Vu::Application::get()->exiting()) {
        m_failed = true;
        error(file + L": cancelled");
        return false;
    }
    m_failed = m_failed || result.failures > 0;
    return result.failures == 0 || m_options.keepGoing;
}

bool LineRunner::runScript(const std::string& path, const std::vector<std::wstring>& arguments)
{
    if (m_options.echo)
        message(L"> " + Vs::Strings::widen(path));
    const LineScope scope(m_lineRuns);
    Vs::Status status;
    const auto [late, message] = Vs::TranscriptMgr::get()->settled([&]() -> Vs::TextCommandResult {
        Vs::PythonManager::get()->runScriptFile(Vs::Strings::fromBytes(path), status, arguments);
        return {0, {}};
    });
    tellWarnings();
    tellMissedBounds(path);
    if (status.isError() && m_scriptCode == 0)
        m_scriptCode = Vs::PythonManager::get()->exitCode();
    if (late != 0)
        return fail(path + ": " + Vs::Strings::narrow(message));
    // The interpreter has already reported the error.
    m_failed = m_failed || status.isError();
    return status.isOk() || m_options.keepGoing;
}

bool LineRunner::fail(const std::string& message)
{
    m_failed = true;
    error(Vs::Strings::widen(message));
    return m_options.keepGoing;
}

void LineRunner::message(const std::wstring& text)
{
    write(stdout, Vs::Strings::narrow(text));
}

void LineRunner::error(const std::wstring& text)
{
    flush();
    tellWarnings(text);
    write(stderr, Vs::Strings::narrow(text));
}

void LineRunner::flush()
{
    std::fflush(stdout);
}

void LineRunner::echo(const std::wstring& line)
{
    if (m_options.echo)
        message(L"> " + Vs::TranscriptSecrets::hidden(line));
}

void LineRunner::warn(const std::wstring& text)
{
    const std::lock_guard lock(m_warningsMutex);
    if (m_lineRuns)
        m_warnings.push_back(text);
    else
        write(stderr, Vs::Strings::narrow(text));
}

void LineRunner::tellWarnings(const std::wstring& failure)
{
    std::vector<std::wstring> warnings;
    {
        const std::lock_guard lock(m_warningsMutex);
        warnings.swap(m_warnings);
    }
    if (warnings.empty())
        return;
    flush();
    for (const std::wstring& warning : warnings)
        if (failure.find(warning) == std::wstring::npos)
            write(stderr, Vs::Strings::narrow(warning));
}

void LineRunner::tellMissedBounds(const std::string& where)
{
    for (const std::wstring& missed : std::exchange(m_missedBounds, {})) {
        m_failed = true;
        error(Vs::Strings::widen(where) + L": " + missed);
    }
}

} // namespace Quillet
