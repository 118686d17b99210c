#include "UI/Commands/Shells/ToolbarCmds.h"

#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Workspace/LayoutStrategy.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <algorithm>
#include <iterator>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ShowCommandToolbarCmdDef::kRow    = {.key = L"ShowCommandToolbarCommand",    .title = "Show Toolbar",        .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow HideCommandToolbarCmdDef::kRow    = {.key = L"HideCommandToolbarCommand",    .title = "Hide Toolbar",        .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ShowNavigationToolbarCmdDef::kRow = {.key = L"ShowNavigationToolbarCommand", .title = "Show Navigation Bar", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow HideNavigationToolbarCmdDef::kRow = {.key = L"HideNavigationToolbarCommand", .title = "Hide Navigation Bar", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow DockAssetToolbarsToBottomCmdDef::kRow = {.key = L"DockAssetToolbarsToBottomCommand", .title = "Dock to Bottom", .titleKey = "lclzDockToBottomCommand", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow DockAssetToolbarsToTopCmdDef::kRow    = {.key = L"DockAssetToolbarsToTopCommand",    .title = "Dock to Top",    .titleKey = "lclzDockToTopCommand",    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

constexpr const wchar_t* kAssetToolbars[] = {L"CommandToolbarQuillet3", L"CommandToolbarNew"};

/// The area that the command would move; null if both stand there.
Area* areaToDock(const WorkspaceWindow& window, const DockCmdDefBase& definition)
{
    const auto away = [&](const std::wstring& name) {
        Area* area = window.area(name);
        return area && area->placement() != definition.target() ? area : nullptr;
    };
    if (Area* own = away(definition.areaName()))
        return own;
    for (const wchar_t* name : kAssetToolbars)
        if (Area* other = away(name))
            return other;
    return nullptr;
}

} // namespace

void toolbarVisibility(WorkspaceWindow& window, const char* contents, bool show)
{
    std::vector<Area*> areas;
    if (Area* root = window.area())
        root->childrenByContents(Vs::UniqueString::find(contents), areas);
    LayoutStrategy* strategy = LayoutStrategy::activeStrategy();
    for (Area* area : areas)
        show ? strategy->show(area) : strategy->hide(area);
    CommandEventSource::get()->fireCommandAvailabilitiesChanged();
}

bool ShowCommandToolbarCmdDef::onIsApplicable(CommandContext*) const
{
    return !UIBaseOptionGroup::get()->wantToShowCommandToolbar();
}

bool HideCommandToolbarCmdDef::onIsApplicable(CommandContext*) const
{
    return UIBaseOptionGroup::get()->wantToShowCommandToolbar();
}

bool ShowNavigationToolbarCmdDef::onIsApplicable(CommandContext*) const
{
    return !UIBaseOptionGroup::get()->wantToShowNavigationToolbar();
}

bool HideNavigationToolbarCmdDef::onIsApplicable(CommandContext*) const
{
    return UIBaseOptionGroup::get()->wantToShowNavigationToolbar();
}

bool DockCmdDefBase::onIsApplicable(CommandContext*) const
{
    const WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    return window && areaToDock(*window, *this);
}

DockCmdBase::DockCmdBase(DockCmdDefBase* definition, CommandContext* context)
    : Implements(definition, context), m_definition(*definition)
{
}

void DockCmdBase::onWindow(WorkspaceWindow& window)
{
    if (Area* area = areaToDock(window, m_definition))
        LayoutStrategy::activeStrategy()->dock(area, m_definition.target(), Vs::Point2());
    CommandEventSource::get()->fireCommandAvailabilitiesChanged();
}

} // namespace Vu::Commands
