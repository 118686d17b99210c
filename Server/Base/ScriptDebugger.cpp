#include "Server/Base/ScriptDebugger.h"

#include "Server/Base/Progress.h"
#include "Server/Base/PythonManager.h"
#include "Server/Base/Require.h"
#include "Server/Base/Status.h"
#include "Server/Base/TranscriptKind.h"
#include "Server/Base/TranscriptMgr.h"

#include <boost/filesystem/path.hpp>

#include <tuple>
#include <utility>

namespace Vs {

namespace {

ScriptDebugInfo& info()
{
    return *TranscriptMgr::get()->scriptDebugInfo();
}

} // namespace

ScriptDebugger* ScriptDebugger::get()
{
    static ScriptDebugger debugger;
    return &debugger;
}

void ScriptDebugger::aim(ScriptGo how, int line)
{
    m_how = how;
    m_file = info().scriptPath();
    m_line = line;
    m_from = m_depth;
}

bool ScriptDebugger::load(const std::wstring& path)
{
    assertMainThread();
    if (running())
        return false;
    info().load(path);
    return true;
}

void ScriptDebugger::go(ScriptGo how, int line)
{
    assertMainThread();
    if (m_runs) {
        if (m_waits) {
            aim(how, line);
            m_waits = false;
        }
        return;
    }
    const std::wstring path = info().loadedPath();
    if (path.empty())
        return;
    info().comeBack();
    aim(how, line);
    m_from = 1; // Where its own lines are.
    begin(path);
    if (TranscriptMgr::typeOf(path) == kPythonTranscript) {
        runPython(path);
    } else {
        Status status; // The host has told what failed.
        TranscriptMgr::get()->replay(path, status, kTextTranscript);
    }
    end();
}

void ScriptDebugger::begin(const std::wstring& path)
{
    m_folder = boost::filesystem::path(path).parent_path().wstring();
    m_ends = m_first = false;
    m_runs = true;
    info().runChanged();
}

void ScriptDebugger::end()
{
    info().comeBack();
    if (m_ends)
        rewind();
    m_runs = false;
    info().runChanged();
}

ScriptDebugger::File::File(const std::wstring& path)
    : m_path(path), m_elsewhere(!get()->m_runs && !get()->m_elsewhere)
{
    ScriptDebugger* debugger = get();
    if (!m_elsewhere)
        return;
    debugger->m_elsewhere = true;
    if (debugger->panelIsThere() && info().hasAnyBreakPoint()) {
        debugger->aim(ScriptGo::Continue, 0);
        debugger->begin(path);
    }
}

ScriptDebugger::File::~File()
{
    ScriptDebugger* debugger = get();
    if (!m_elsewhere)
        return;
    if (debugger->m_runs)
        debugger->end();
    debugger->m_elsewhere = false;
    if (m_line > 0 && debugger->panelIsThere())
        debugger->showStopped(m_path, m_line);
}

void ScriptDebugger::showStopped(const std::wstring& path, int line) const
{
    const bool stands = info().stepLine() > 0 && info().stepLine() < info().scriptLines();
    if (info().loadedPath() != path && stands)
        return; // Somebody is in the midst of another one.
    if (info().loadedPath() != path)
        info().load(path);
    info().stepLine(line - 1);
}

void ScriptDebugger::runPython(const std::wstring& path)
{
    Status status;
    info().stepLine(0);
    m_first = true;
    if (isTranscript(path))
        TranscriptMgr::get()->replay(path, status, kPythonTranscript);
    else
        std::ignore = PythonManager::get()->runScriptFile(path, status);
    info().comeBack();
    // At its end, as a transcript of text is.
    info().stepLine(info().scriptLines());
}

void ScriptDebugger::rewind()
{
    if (m_waits)
        stop();
    info().comeBack();
    info().stepLine(0);
    info().resetBreakPoints();
}

void ScriptDebugger::stop()
{
    if (m_runs) {
        m_ends = true;
        m_waits = false;
        Progress::requestCancel();
    } else {
        rewind();
    }
}

bool ScriptDebugger::leadsTo(const std::wstring& path, int line) const
{
    if (!m_runs)
        return false;
    switch (m_how) {
    case ScriptGo::Continue:
        return false;
    case ScriptGo::Over:
        return m_depth <= m_from;
    case ScriptGo::Into:
        return true;
    case ScriptGo::Out:
        return m_depth < m_from;
    case ScriptGo::ToLine:
        return line == m_line && path == m_file;
    }
    return false;
}

bool ScriptDebugger::waitsBefore(const std::wstring& path, int line)
{
    if (!m_runs || m_ends || !panelIsThere())
        return false;
    // The mark of a script that hasn't begun is at its first line, which a step is to run.
    const bool begins = std::exchange(m_first, false) && line == 1 && m_how != ScriptGo::ToLine;
    return info().isBreakPointOf(path, line) || (!begins && leadsTo(path, line));
}

void ScriptDebugger::wait(const std::wstring& path, int line)
{
    info().visit(path, line);
    m_waits = true;
    info().runChanged();
    m_panel.wait([this] { return !m_waits || Progress::cancelled(); });
    m_ends = m_ends || Progress::cancelled();
    m_waits = false;
    info().runChanged();
}

bool ScriptDebugger::follows(const std::wstring& path) const
{
    const bool isBelow = path.size() > m_folder.size() && path.starts_with(m_folder) &&
                         (m_folder.ends_with(L'/') || path[m_folder.size()] == L'/');
    return m_runs && (isBelow || info().hasBreakPointsIn(path));
}

} // namespace Vs
