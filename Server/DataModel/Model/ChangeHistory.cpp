#include "Server/DataModel/Model/ChangeHistory.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/TransactionStepUserCache.h"

#include <algorithm>
#include <utility>

namespace Vs {

void ChangeHistory::begin(const std::wstring& name, const std::wstring& cmdKey)
{
    require(!m_open, "changes are made one at a time");
    m_open = std::make_unique<Step>(&top(), name, cmdKey);
}

void ChangeHistory::enter(ModelKernel& kernel)
{
    require(isOpen(), "a model is changed within a transaction");
    if (m_kernelOpen)
        return;
    kernel.begin();
    m_kernelOpen = true;
    m_open->m_touchesModel = true;
}

void ChangeHistory::settle()
{
    if (!std::exchange(m_kernelOpen, false))
        return;
    std::shared_ptr<ModelChange> change =
        m_source.withKernel([](ModelKernel& kernel) { return kernel.commit(); });
    if (change)
        m_open->m_model.push_back(std::move(change));
    m_open->m_touchesModel = !m_open->m_model.empty();
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

ChangeHistory::Extent ChangeHistory::keep(std::unique_ptr<Step> step)
{
    std::erase_if(step->m_settings, [](const auto& each) { return each.second.before == each.second.after; });
    const Extent extent = extentOf(*step);
    if (extent.nothing() && !m_group)
        return extent;
    step->m_committed = true;
    step->m_time = std::chrono::system_clock::now();
    Step& parent = top();
    parent.m_undone.clear();
    parent.m_done.push_back(std::move(step));
    if (!m_group && m_session.m_done.size() > kUndoSteps)
        m_session.m_done.pop_front();
    return extent;
}

ChangeHistory::Extent ChangeHistory::commit(std::shared_ptr<TransactionStepUserCache> cache)
{
    require(isOpen(), "the change that ends is open");
    settle();
    m_open->m_userCache = std::move(cache);
    return keep(std::move(m_open));
}

ChangeHistory::Extent ChangeHistory::abort()
{
    require(isOpen(), "the change that ends is open");
    if (std::exchange(m_kernelOpen, false))
        m_source.withKernel([](ModelKernel& kernel) { kernel.abort(); });
    const std::unique_ptr<Step> step = std::move(m_open);
    revertModel(*step);
    putAll(*step, &Step::Difference::before);
    return extentOf(*step);
}

void ChangeHistory::revertModel(Step& step)
{
    if (step.m_model.empty())
        return;
    m_source.withKernel([&](ModelKernel& kernel) {
        std::reverse(step.m_model.begin(), step.m_model.end());
        for (std::shared_ptr<ModelChange>& change : step.m_model)
            change = kernel.revert(*change);
    });
}

ChangeHistory::Extent ChangeHistory::undo()
{
    Step::Changes& done = top().m_done;
    if (m_open || done.empty())
        return {};
    revertModel(*done.back());
    Step& step = *top().m_undone.emplace_front(std::move(done.back()));
    done.pop_back();
    putAll(step, &Step::Difference::before);
    return extentOf(step);
}

ChangeHistory::Extent ChangeHistory::redo()
{
    Step::Changes& undone = top().m_undone;
    if (m_open || undone.empty())
        return {};
    revertModel(*undone.front());
    Step& step = *top().m_done.emplace_back(std::move(undone.front()));
    undone.pop_front();
    putAll(step, &Step::Difference::after);
    return extentOf(step);
}

void ChangeHistory::beginGroup(const std::wstring& name, const std::wstring& cmdKey)
{
    require(!m_open && !m_group, "steps are grouped while nothing is open");
    m_group = std::make_unique<Step>(&m_session, name, cmdKey);
}

ChangeHistory::Extent ChangeHistory::commitGroup()
{
    require(m_group && !m_open, "the group that ends is open, and none of its steps");
    const std::unique_ptr<Step> group = std::move(m_group);
    auto whole = std::make_unique<Step>(&m_session, group->m_userName, group->m_cmdKey);
    for (const std::unique_ptr<Step>& step : group->m_done) {
        std::move(step->m_model.begin(), step->m_model.end(), std::back_inserter(whole->m_model));
        for (const auto& [key, difference] : step->m_settings)
            whole->m_settings.try_emplace(key, difference).first->second.after = difference.after;
    }
    whole->m_touchesModel = !whole->m_model.empty();
    return keep(std::move(whole));
}

ChangeHistory::Extent ChangeHistory::abortGroup()
{
    require(m_group && !m_open, "the group that ends is open, and none of its steps");
    Extent extent;
    while (!m_group->m_done.empty())
        extent.add(undo());
    m_group.reset();
    return extent;
}

} // namespace Vs
