#include "Server/Base/ScriptDebugInfo.h"

#include "Server/Base/Require.h"
#include "Server/Base/TranscriptMgr.h"

#include <algorithm>

namespace Vs {

void ScriptDebugInfo::scriptPath(const std::wstring& path)
{
    m_path = path;
    changed();
}

void ScriptDebugInfo::scriptLines(int lines)
{
    m_lines = lines;
    changed();
}

void ScriptDebugInfo::stepLine(int line)
{
    m_step = line;
    changed();
}

void ScriptDebugInfo::addBreakPoint(int line)
{
    require(line >= 1, "lines are counted from 1");
    m_breakPoints.emplace(line, false);
    changed();
}

void ScriptDebugInfo::removeBreakPoint(int line)
{
    m_breakPoints.erase(line);
    changed();
}

void ScriptDebugInfo::resetBreakPoints()
{
    for (auto& [line, passed] : m_breakPoints)
        passed = false;
    changed();
}

void ScriptDebugInfo::removeAllBreakPoints()
{
    m_breakPoints.clear();
    changed();
}

bool ScriptDebugInfo::stopsAt(int line)
{
    const auto found = m_breakPoints.find(line);
    if (found == m_breakPoints.end() || found->second)
        return false;
    return found->second = true;
}

void ScriptDebugInfo::needToReload(bool value)
{
    m_needToReload = value;
    changed();
}

void ScriptDebugInfo::changed()
{
    assertMainThread();
    // A notified one may create or remove others.
    for (IScriptDebugInfoObserver* observer : std::vector(m_observers))
        if (std::find(m_observers.begin(), m_observers.end(), observer) != m_observers.end())
            observer->onScriptDebugInfoChanged();
}

IScriptDebugInfoObserver::IScriptDebugInfoObserver()
{
    if (ScriptDebugInfo* info = scriptDebugInfo())
        info->m_observers.push_back(this);
}

IScriptDebugInfoObserver::~IScriptDebugInfoObserver()
{
    if (ScriptDebugInfo* info = scriptDebugInfo())
        std::erase(info->m_observers, this);
}

ScriptDebugInfo* IScriptDebugInfoObserver::scriptDebugInfo() const
{
    return TranscriptMgr::get()->scriptDebugInfo();
}

} // namespace Vs
