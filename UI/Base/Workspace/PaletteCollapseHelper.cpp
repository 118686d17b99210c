#include "UI/Base/Workspace/PaletteCollapseHelper.h"

#include "UI/Base/Workspace/LayoutStrategy.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

namespace Vu {
namespace {

Area* areaOfActiveWindow(const std::wstring& name)
{
    const WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    return window ? window->area(name) : nullptr;
}

void collect(Area& area, EPlacement side, std::vector<Area*>& found)
{
    for (const auto& child : area.children()) {
        if (!child->visible())
            continue;
        if (!child->collapsed())
            collect(*child, side, found);
        else if (child->collapsedPlacement() == side)
            found.push_back(child.get());
    }
}

} // namespace

PaletteCollapseHelper* PaletteCollapseHelper::getInstance()
{
    static PaletteCollapseHelper helper;
    return &helper;
}

bool PaletteCollapseHelper::isCollapseBarVisible(EPlacement side) const
{
    const WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    Area* root = window ? window->area() : nullptr;
    return root && !palettes(*root, side).empty();
}

void PaletteCollapseHelper::showCollapseBar(EPlacement side, bool show)
{
    const bool changed = show ? m_hidden.erase(side) > 0 : m_hidden.insert(side).second;
    WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    if (changed && window)
        window->arrangementChanged();
}

void PaletteCollapseHelper::collapsePalette(const std::wstring& name, EPlacement side)
{
    if (Area* area = areaOfActiveWindow(name))
        LayoutStrategy::activeStrategy()->collapse(area, side);
}

void PaletteCollapseHelper::removePaletteFromBar(const Vs::UniqueString* name, bool open)
{
    Area* area = name ? areaOfActiveWindow(name->wideText()) : nullptr;
    if (!area || !area->collapsed())
        return;
    if (open)
        LayoutStrategy::activeStrategy()->expand(area);
    else
        LayoutStrategy::activeStrategy()->hide(area);
}

std::vector<Area*> PaletteCollapseHelper::palettes(Area& root, EPlacement side) const
{
    std::vector<Area*> found;
    if (!m_hidden.contains(side))
        collect(root, side, found);
    return found;
}

} // namespace Vu
