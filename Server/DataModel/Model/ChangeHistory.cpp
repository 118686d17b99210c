#include "Server/DataModel/Model/ChangeHistory.h"

#include <utility>

namespace Vs {

void ChangeHistory::begin(const std::wstring& name, const std::wstring& cmdKey)
{
    m_open = std::make_unique<Step>(&m_session, name, cmdKey);
}

void ChangeHistory::enter(ModelKernel& kernel)
{
    if (!m_open || m_open->m_model)
        return;
    kernel.begin();
    m_open->m_model = true;
}

void ChangeHistory::put(const std::string& key, const std::wstring& value)
{
    if (value.empty())
        m_settings.erase(key);
    else
        m_settings[key] = value;
}

void ChangeHistory::putAll(const Step& step, std::wstring Step::Difference::*side)
{
    for (const auto& [key, difference] : step.m_settings)
        put(key, difference.*side);
}

bool ChangeHistory::set(const std::string& key, const std::wstring& value)
{
    const auto found = m_settings.find(key);
    const std::wstring before = found == m_settings.end() ? std::wstring() : found->second;
    if (value == before)
        return false;
    put(key, value);
    if (m_open)
        m_open->m_settings.try_emplace(key, Step::Difference{before, value}).first->second.after = value;
    return true;
}

ChangeHistory::Extent ChangeHistory::commit()
{
    std::unique_ptr<Step> step = std::move(m_open);
    std::erase_if(step->m_settings, [](const auto& each) { return each.second.before == each.second.after; });
    step->m_model = step->m_model && m_source.withKernel([](ModelKernel& kernel) { return kernel.commit(); });
    const Extent extent = extentOf(*step);
    if (extent.nothing())
        return extent;
    step->m_committed = true;
    m_session.m_undone.clear();
    m_session.m_done.push_back(std::move(step));
    // The kernel keeps as many of its own, so that those are still there that stand in this list.
    if (m_session.m_done.size() > ModelKernel::kUndoSteps)
        m_session.m_done.pop_front();
    return extent;
}

ChangeHistory::Extent ChangeHistory::abort()
{
    const std::unique_ptr<Step> step = std::move(m_open);
    if (step->m_model)
        m_source.withKernel([](ModelKernel& kernel) { kernel.abort(); });
    putAll(*step, &Step::Difference::before);
    return extentOf(*step);
}

ChangeHistory::Extent ChangeHistory::undo()
{
    Step::Changes& done = m_session.m_done;
    if (m_open || done.empty() ||
        (done.back()->m_model && !m_source.withKernel([](ModelKernel& kernel) { return kernel.undo(); })))
        return {};
    Step& step = *m_session.m_undone.emplace_front(std::move(done.back()));
    done.pop_back();
    putAll(step, &Step::Difference::before);
    return extentOf(step);
}

ChangeHistory::Extent ChangeHistory::redo()
{
    Step::Changes& undone = m_session.m_undone;
    if (m_open || undone.empty() ||
        (undone.front()->m_model && !m_source.withKernel([](ModelKernel& kernel) { return kernel.redo(); })))
        return {};
    Step& step = *m_session.m_done.emplace_back(std::move(undone.front()));
    undone.pop_front();
    putAll(step, &Step::Difference::after);
    return extentOf(step);
}

} // namespace Vs
