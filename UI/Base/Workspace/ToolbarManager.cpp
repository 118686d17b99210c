#include "UI/Base/Workspace/ToolbarManager.h"

#include "Server/Base/Require.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/Info.h"
#include "UI/Base/Command/InputControl.h"

#include <algorithm>

namespace Vu {
namespace {

void collectUnknown(const std::vector<ToolbarItem>& items, std::vector<std::wstring>& unknown)
{
    for (const ToolbarItem& item : items) {
        collectUnknown(item.menu, unknown);
        if (!item.command.empty() && !CommandDefinitionMgr::get()->findCommandDefinitionById(item.command) &&
            std::find(unknown.begin(), unknown.end(), item.command) == unknown.end())
            unknown.push_back(item.command);
    }
}

} // namespace

bool Toolbar::standsIn(const std::wstring& environment) const
{
    return visible && (environments.empty() || std::find(environments.begin(), environments.end(),
                                                         environment) != environments.end());
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
        collectUnknown(toolbar.items, unknown);
    return unknown;
}

} // namespace Vu
