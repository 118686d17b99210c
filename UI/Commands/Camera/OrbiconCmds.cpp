#include "UI/Commands/Camera/OrbiconCmds.h"

#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/AutoCamViewFragment.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/Workspace/LayoutStrategy.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Resources.h"

#include <algorithm>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ShowOrbiconCmdDef::kRow = {.key = L"ShowOrbiconCommand", .title = "Show Orbicon", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow HideOrbiconCmdDef::kRow = {.key = L"HideOrbiconCommand", .title = "Hide Orbicon", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ViewWidgetCmdDef::kRow  = {.key = L"ViewWidgetCommand", .title = "View", .icon = &Resources::ViewVisibility};
// clang-format on

namespace {

/// In the active view at once, in the others as they hear of the option.
void showOrbicon(bool show)
{
    GraphicsView* view = graphicsViewOf(SessionMgr::get()->activeAssetSession());
    if (!view)
        return;
    const auto& fragments = view->viewFragments();
    const auto found = std::ranges::find_if(
        fragments, [](auto* fragment) { return Vs::cast<AutoCamViewFragment>(fragment) != nullptr; });
    if (found != fragments.end()) {
        auto* orbicon = Vs::cast<AutoCamViewFragment>(*found);
        LayoutStrategy* strategy = LayoutStrategy::activeStrategy();
        if (show)
            strategy->show(orbicon->area());
        else
            strategy->hide(orbicon->area());
        if (orbicon->enabled() != show)
            orbicon->enable(show);
    }
    UIBaseOptionGroup::get()->wantToShowOrbicon(show);
    CommandEventSource::get()->fireCommandAvailabilitiesChanged();
}

} // namespace

bool ShowOrbiconCmdDef::onIsApplicable(CommandContext*) const
{
    return !UIBaseOptionGroup::get()->wantToShowOrbicon();
}

ShowOrbiconCmd::ShowOrbiconCmd(ShowOrbiconCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType ShowOrbiconCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void ShowOrbiconCmd::onExecute(Vs::Status&)
{
    showOrbicon(true);
}

bool HideOrbiconCmdDef::onIsApplicable(CommandContext*) const
{
    return UIBaseOptionGroup::get()->wantToShowOrbicon();
}

HideOrbiconCmd::HideOrbiconCmd(HideOrbiconCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType HideOrbiconCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void HideOrbiconCmd::onExecute(Vs::Status&)
{
    showOrbicon(false);
}

ViewWidgetCmd::ViewWidgetCmd(ViewWidgetCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType ViewWidgetCmd::onCommandType() const
{
    return ECommandType::Nested;
}

} // namespace Vu::Commands
