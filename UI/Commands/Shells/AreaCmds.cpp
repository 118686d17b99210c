#include "UI/Commands/Shells/AreaCmds.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/LayoutStrategy.h"
#include "UI/Base/Workspace/PaletteCollapseHelper.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ShowBrowserCmdDef::kRow      = {.key = L"ShowBrowserCommand",      .title = "Show Browser",       .icon = &Resources::DeselectedListItem, .groups = {&CommandGroup::DebugGroup, &CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow HideBrowserCmdDef::kRow      = {.key = L"HideBrowserCommand",      .title = "Hide Browser",       .icon = &Resources::DeselectedListItem, .groups = {&CommandGroup::DebugGroup, &CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ShowDesignFeedCmdDef::kRow   = {.key = L"ShowDesignFeedCommand",   .title = "Show Design Feed",   .groups = {&CommandGroup::DebugGroup, &CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow HideDesignFeedCmdDef::kRow   = {.key = L"HideDesignFeedCommand",   .title = "Hide Design Feed",   .groups = {&CommandGroup::DebugGroup, &CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ShowPropertiesCmdDef::kRow   = {.key = L"ShowPropertiesCommand",   .title = "Show Properties",    .groups = {&CommandGroup::DebugGroup, &CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow HidePropertiesCmdDef::kRow   = {.key = L"HidePropertiesCommand",   .title = "Hide Properties",    .groups = {&CommandGroup::DebugGroup, &CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ShowScriptPanelCmdDef::kRow  = {.key = L"ShowScriptPanelCommand",  .title = "Show Script Panel",  .icon = &Resources::RunScript, .groups = {&CommandGroup::DebugGroup, &CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow HideScriptPanelCmdDef::kRow  = {.key = L"HideScriptPanelCommand",  .title = "Hide Script Panel",  .icon = &Resources::RunScript, .groups = {&CommandGroup::DebugGroup, &CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ShowTextCommandsCmdDef::kRow = {.key = L"ShowTextCommandsCommand", .title = "Show Text Commands", .icon = &Resources::TextCommand, .groups = {&CommandGroup::DebugGroup, &CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow HideTextCommandsCmdDef::kRow = {.key = L"HideTextCommandsCommand", .title = "Hide Text Commands", .icon = &Resources::TextCommand, .groups = {&CommandGroup::DebugGroup, &CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

void setVisible(Area* area, bool show)
{
    if (show)
        LayoutStrategy::activeStrategy()->show(area);
    else
        LayoutStrategy::activeStrategy()->hide(area);
}

void setCollapsedVisible(Area* area, bool show)
{
    PaletteCollapseHelper* bars = PaletteCollapseHelper::getInstance();
    const EPlacement side = area->collapsedPlacement();
    if (show) {
        if (!bars->isCollapseBarVisible(side))
            bars->showCollapseBar(side, true);
        setVisible(area, true);
        bars->collapsePalette(area->name(), side);
    } else {
        bars->removePaletteFromBar(Vs::UniqueString::find(Vs::Strings::narrow(area->name())), false);
        setVisible(area, false);
    }
}

/// The one of the context's window; null if any part of it is missing.
Layout* layoutOf(const CommandContext& context)
{
    const Workspace* workspace = context.workspace();
    const WorkspaceWindow* window = workspace ? workspace->window() : nullptr;
    const ArrangementMgr* arrangements = window ? window->arrangementManager() : nullptr;
    const Arrangement* arrangement = arrangements ? arrangements->arrangement() : nullptr;
    return arrangement ? arrangement->layout() : nullptr;
}

} // namespace

void areaVisibility(CommandContext& context, const Vs::UniqueString* contents, bool show)
{
    Layout* layout = layoutOf(context);
    if (!layout)
        return;
    std::vector<Area*> areas;
    layout->childrenByContents(contents, areas, true);
    for (Area* each : areas) {
        Area* area = each->palette();
        if (area->collapsed())
            setCollapsedVisible(area, show);
        else
            setVisible(area, show);
        // Whether it is on a bar or not, the user wants to see it.
        if (each->name() == L"Browser")
            UIBaseOptionGroup::get()->wantToShowBrowser(show);
        else if (each->name() == L"DesignFeed")
            UIBaseOptionGroup::get()->wantToShowDesignFeed(show);
        else if (each->name() == L"Properties")
            UIBaseOptionGroup::get()->wantToShowProperties(show);
        else if (each->name() == L"ScriptPanel")
            UIBaseOptionGroup::get()->wantToShowScriptPanel(show);
    }
    CommandEventSource::get()->fireCommandAvailabilitiesChanged();
}

CommandBase* ShowAreaCmdDef::onCreateCommand(CommandContext* context)
{
    return new ShowAreaCmd(this, context);
}

CommandBase* HideAreaCmdDef::onCreateCommand(CommandContext* context)
{
    return new HideAreaCmd(this, context);
}

AreaCmd::AreaCmd(AreaCmdDef* definition, CommandContext* context)
    : Implements(definition, context), m_contents(definition->contentsOfArea())
{
    repeatable(false);
}

void ShowAreaCmd::onExecute(Vs::Status&)
{
    areaVisibility(*commandContext(), contentsOfArea(), true);
}

void HideAreaCmd::onExecute(Vs::Status&)
{
    areaVisibility(*commandContext(), contentsOfArea(), false);
}

bool ShowBrowserCmdDef::onIsApplicable(CommandContext*) const
{
    return SplitViewMgr::get()->validToShowBrowser() && !UIBaseOptionGroup::get()->wantToShowBrowser();
}

bool HideBrowserCmdDef::onIsApplicable(CommandContext*) const
{
    return SplitViewMgr::get()->validToShowBrowser() && UIBaseOptionGroup::get()->wantToShowBrowser();
}

bool ShowDesignFeedCmdDef::onIsApplicable(CommandContext*) const
{
    return SessionMgr::get()->activeDocumentSession() && !UIBaseOptionGroup::get()->wantToShowDesignFeed();
}

bool HideDesignFeedCmdDef::onIsApplicable(CommandContext*) const
{
    return SessionMgr::get()->activeDocumentSession() && UIBaseOptionGroup::get()->wantToShowDesignFeed();
}

void ShowPropertiesCmdDef::createCommandDef()
{
    static ShowPropertiesCmdDef definition;
}

bool ShowPropertiesCmdDef::onIsApplicable(CommandContext*) const
{
    return SessionMgr::get()->activeDocumentSession() && !UIBaseOptionGroup::get()->wantToShowProperties();
}

void HidePropertiesCmdDef::createCommandDef()
{
    static HidePropertiesCmdDef definition;
}

bool HidePropertiesCmdDef::onIsApplicable(CommandContext*) const
{
    return SessionMgr::get()->activeDocumentSession() && UIBaseOptionGroup::get()->wantToShowProperties();
}

void ShowScriptPanelCmdDef::createCommandDef()
{
    static ShowScriptPanelCmdDef definition;
}

bool ShowScriptPanelCmdDef::onIsApplicable(CommandContext*) const
{
    return !UIBaseOptionGroup::get()->wantToShowScriptPanel();
}

void HideScriptPanelCmdDef::createCommandDef()
{
    static HideScriptPanelCmdDef definition;
}

bool HideScriptPanelCmdDef::onIsApplicable(CommandContext*) const
{
    return UIBaseOptionGroup::get()->wantToShowScriptPanel();
}

bool ShowTextCommandsCmdDef::onIsApplicable(CommandContext*) const
{
    return !UIBaseOptionGroup::get()->wantToShowTextCommands();
}

bool HideTextCommandsCmdDef::onIsApplicable(CommandContext*) const
{
    return UIBaseOptionGroup::get()->wantToShowTextCommands();
}

} // namespace Vu::Commands
