#include "Server/DataModel/Model/ChangeHistory.h"

#include <utility>

namespace Vs {

void ChangeHistory::begin(const std::wstring& name)
{
    m_open = {.name = name};
    m_isOpen = true;
}

void ChangeHistory::enter(ModelKernel& kernel)
{
    if (!m_isOpen || m_open.model)
        return;
    kernel.begin();
    m_open.model = true;
}

void ChangeHistory::put(const std::string& key, const std::wstring& value)
{
    if (value.empty())
        m_settings.erase(key);
    else
        m_settings[key] = value;
}

void ChangeHistory::putAll(const Step& step, std::wstring Difference::*side)
{
    for (const auto& [key, difference] : step.settings)
        put(key, difference.*side);
}

bool ChangeHistory::set(const std::string& key, const std::wstring& value)
{
    const auto found = m_settings.find(key);
    const std::wstring before = found == m_settings.end() ? std::wstring() : found->second;
    if (value == before)
        return false;
    put(key, value);
    if (m_isOpen)
        m_open.settings.try_emplace(key, Difference{before, value}).first->second.after = value;
    return true;
}

ChangeHistory::Extent ChangeHistory::commit()
{
    Step step = std::exchange(m_open, {});
    m_isOpen = false;
    std::erase_if(step.settings, [](const auto& each) { return each.second.before == each.second.after; });
    step.model = step.model && m_source.withKernel([](ModelKernel& kernel) { return kernel.commit(); });
    const Extent extent = step.extent();
    if (extent.nothing())
        return extent;
    m_redo.clear();
    m_undo.push_back(std::move(step));
    // The kernel keeps as many of its own, so that those are still there that stand in this list.
    if (m_undo.size() > ModelKernel::kUndoSteps)
        m_undo.pop_front();
    return extent;
}

ChangeHistory::Extent ChangeHistory::abort()
{
    const Step step = std::exchange(m_open, {});
    m_isOpen = false;
    if (step.model)
        m_source.withKernel([](ModelKernel& kernel) { kernel.abort(); });
    putAll(step, &Difference::before);
    return step.extent();
}

ChangeHistory::Extent ChangeHistory::undo()
{
    if (m_isOpen || m_undo.empty() ||
        (m_undo.back().model && !m_source.withKernel([](ModelKernel& kernel) { return kernel.undo(); })))
        return {};
    m_redo.push_back(std::move(m_undo.back()));
    m_undo.pop_back();
    putAll(m_redo.back(), &Difference::before);
    return m_redo.back().extent();
}

ChangeHistory::Extent ChangeHistory::redo()
{
    if (m_isOpen || m_redo.empty() ||
        (m_redo.back().model && !m_source.withKernel([](ModelKernel& kernel) { return kernel.redo(); })))
        return {};
    m_undo.push_back(std::move(m_redo.back()));
    m_redo.pop_back();
    putAll(m_undo.back(), &Difference::after);
    return m_undo.back().extent();
}

} // namespace Vs
