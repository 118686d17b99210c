#include "Server/Base/ScriptDebugInfo.h"

#include "Server/Base/Require.h"
#include "Server/Base/TranscriptMgr.h"

#include <algorithm>

namespace Vs {

void ScriptDebugInfo::scriptPath(const std::wstring& path)
{
    if (m_behind) {
        // The breakpoints that stay are those of what was loaded.
        m_otherPoints[m_path] = m_breakPoints;
        m_breakPoints = std::move(m_otherPoints[m_behind->path]);
        m_behind.reset();
    }
    m_otherPoints.erase(path);
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
    m_otherPoints.clear();
    changed();
}

bool ScriptDebugInfo::stopsAt(int line)
{
    const auto found = m_breakPoints.find(line);
    if (found == m_breakPoints.end() || found->second)
        return false;
    return found->second = true;
}

void ScriptDebugInfo::visit(const std::wstring& path, int line)
{
    if (m_behind && path == m_behind->path)
        comeBack();
    if (path != m_path) {
        if (!m_behind)
            m_behind = {m_path, m_lines, m_step};
        turnTo(path, 0, line - 1);
    }
    stepLine(line - 1);
}

void ScriptDebugInfo::comeBack()
{
    if (!m_behind)
        return;
    const Behind behind = *m_behind;
    m_behind.reset();
    turnTo(behind.path, behind.lines, behind.step);
}

void ScriptDebugInfo::load(const std::wstring& path)
{
    comeBack();
    if (path != m_path) {
        turnTo(path, 0, 0);
    } else {
        needToReload(true);
        needToReload(false);
    }
    stepLine(0);
    resetBreakPoints();
}

void ScriptDebugInfo::turnTo(const std::wstring& path, int lines, int step)
{
    m_otherPoints[m_path] = std::move(m_breakPoints);
    m_breakPoints = std::move(m_otherPoints[path]);
    m_otherPoints.erase(path);
    m_path = path;
    m_lines = lines;
    m_step = step;
    needToReload(true);
    needToReload(false);
}

const ScriptDebugInfo::BreakPoints* ScriptDebugInfo::breakPointsIn(const std::wstring& path) const
{
    if (path == m_path)
        return &m_breakPoints;
    const auto found = m_otherPoints.find(path);
    return found != m_otherPoints.end() ? &found->second : nullptr;
}

bool ScriptDebugInfo::isBreakPointOf(const std::wstring& path, int line) const
{
    const BreakPoints* points = breakPointsIn(path);
    return points && points->contains(line);
}

bool ScriptDebugInfo::hasBreakPointsIn(const std::wstring& path) const
{
    const BreakPoints* points = breakPointsIn(path);
    return points && !points->empty();
}

bool ScriptDebugInfo::hasAnyBreakPoint() const
{
    return !m_breakPoints.empty() || std::any_of(m_otherPoints.begin(), m_otherPoints.end(),
                                                 [](const auto& each) { return !each.second.empty(); });
}

void ScriptDebugInfo::linesMoved(int line, int count)
{
    // The first line that stays, behind those that are removed.
    const int stays = line - std::min(count, 0);
    BreakPoints moved;
    for (const auto& [at, passed] : m_breakPoints)
        if (at < line || at >= stays)
            moved.emplace(at < line ? at : at + count, passed);
    m_breakPoints = std::move(moved);
    if (m_step + 1 >= stays)
        m_step += count;
    else if (m_step + 1 > line)
        m_step = line - 1;
    changed();
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
