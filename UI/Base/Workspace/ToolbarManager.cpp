#include "UI/Base/Workspace/ToolbarManager.h"

#include "Server/Base/Require.h"
#include "UI/Base/Command/Info.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Workspace/Private/ToolbarItems.h"

#include <algorithm>
#include <utility>

namespace Vu {
namespace {

bool contains(const std::vector<std::wstring>& ids, const std::wstring& id)
{
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

} // namespace

bool Toolbar::standsIn(const std::wstring& environment) const
{
    return visible && (environments.empty() || contains(environments, environment));
}

const ToolbarItem* Toolbar::findItem(const InputControl* control) const
{
    const auto found = std::find_if(items.begin(), items.end(), [&](const ToolbarItem& item) {
        return item.command == control->info()->key();
    });
    return found == items.end() ? nullptr : &*found;
}

void Toolbar::addItem(const InputControl* control, size_t position)
{
    ToolbarItem item;
    item.command = control->info()->key();
    items.insert(items.begin() + static_cast<ptrdiff_t>(std::min(position, items.size())), std::move(item));
}

ToolbarManager* ToolbarManager::get()
{
    static auto* const manager = new ToolbarManager;
    return manager;
}

ToolbarManager::ToolbarManager() : m_hidden(UIBaseOptionGroup::get()->hiddenToolbars())
{
    UIBaseOptionGroup::get()->subscribe(this);
}

void ToolbarManager::optionChanged(Vs::OptionEvent* event)
{
    if (event->name() != "hiddenToolbars")
        return;
    const std::vector<std::wstring> before =
        std::exchange(m_hidden, UIBaseOptionGroup::get()->hiddenToolbars());
    for (const std::wstring& id : m_hidden)
        if (!contains(before, id))
            hideToolbar(id);
    for (const std::wstring& id : before)
        if (!contains(m_hidden, id))
            showToolbar(id);
}

void ToolbarManager::changed()
{
    forEach([](ToolbarEventSite* site) { site->toolbarsChanged(); });
}

Toolbar* ToolbarManager::toolbarById(const std::wstring& id)
{
    const auto found = std::find_if(m_toolbars.begin(), m_toolbars.end(),
                                    [&](const Toolbar& toolbar) { return toolbar.id == id; });
    return found == m_toolbars.end() ? nullptr : &*found;
}

void ToolbarManager::add(Toolbar toolbar)
{
    Vs::require(!toolbar.id.empty(), "a toolbar has an identifier");
    toolbar.visible = toolbar.visible && !contains(m_hidden, toolbar.id);
    if (Toolbar* old = toolbarById(toolbar.id))
        *old = std::move(toolbar);
    else
        m_toolbars.push_back(std::move(toolbar));
    changed();
}

void ToolbarManager::hideToolbar(const std::wstring& id)
{
    if (Toolbar* toolbar = toolbarById(id); toolbar && toolbar->visible) {
        toolbar->visible = false;
        changed();
    }
}

void ToolbarManager::showToolbar(const std::wstring& id)
{
    if (Toolbar* toolbar = toolbarById(id); toolbar && !toolbar->visible) {
        toolbar->visible = true;
        changed();
    }
}

std::vector<std::wstring> ToolbarManager::unknownCommands() const
{
    std::vector<std::wstring> unknown;
    for (const Toolbar& toolbar : m_toolbars)
        collectUnknownCommands(toolbar.items, unknown);
    return unknown;
}

} // namespace Vu
