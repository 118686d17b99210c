#include "UI/Commands/Camera/ViewMenus.h"

#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/MSAASettings.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Commands/Camera/ViewCmd.h"
#include "UI/Commands/Camera/ViewCmdDefs.h"
#include "UI/Commands/Resources.h"

#include <algorithm>
#include <tuple>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ViewEffectCmdDef::kRow     = {.key = L"ViewEffectCommand", .title = "Effects", .icon = &Resources::ViewGroundShadowOn, .groups = {&CommandGroup::VisualizationGroup, &CommandGroup::BaseGroup}, .arguments = {L"CmdId"}};
constinit const CommandRow ViewLayoutGridCmdDef::kRow = {.key = L"ViewLayoutGridCommand", .title = "Layout Grid", .icon = &Resources::Grid, .groups = {&CommandGroup::VisualizationGroup, &CommandGroup::BaseGroup}, .arguments = {L"CmdId"}};

namespace {

Vs::Scene::GraphicsOptionGroup& options()
{
    return *Vs::Scene::GraphicsOptionGroup::get();
}

bool dome()             { return options().displayDome(); }
bool groundPlane()      { return options().displayGroundPlane(); }
bool groundShadow()     { return options().groundShadowEnabled(); }
bool groundReflection() { return options().groundReflectionEnabled(); }
bool ambientOcclusion() { return options().ambientOccludedEnabled(); }
bool msaa()             { return options().MSAA(); }
bool layoutGrid()       { return options().showLayoutGrid(); }
bool gridRefNumbers()   { return options().showGridRefNumbers(); }

bool objectShadow()
{
    const int type = options().objectShadowType();
    return type >= 1 && type <= 3;
}

/// Whether this machine can smooth edges.
bool offersMSAA()
{
    int level = 1, quality = 0;
    Vs::Scene::GetMSAASettings(level, quality);
    return level > 1;
}

constexpr ViewMenuEntry kEffects[] = {
    {&ViewDomeCmdDef::info,             dome,             nullptr,     L"ViewDomeOnCommand",             L"ViewDomeOffCommand",             true},
    {&ViewGroundPlaneCmdDef::info,      groundPlane,      nullptr,     L"ViewGroundPlaneOnCommand",      L"ViewGroundPlaneOffCommand",      true},
    {&ViewGroundShadowCmdDef::info,     groundShadow,     groundPlane, L"ViewGroundShadowOnCommand",     L"ViewGroundShadowOffCommand",     true},
    {&ViewGroundReflectionCmdDef::info, groundReflection, groundPlane, L"ViewGroundReflectionOnCommand", L"ViewGroundReflectionOffCommand", true},
    {&ViewObjectShadowCmdDef::info,     objectShadow,     nullptr,     L"ViewObjectShadowSoft2Command",  L"ViewObjectShadowNoneCommand",    true},
    {&ViewAmbientOcclusionCmdDef::info, ambientOcclusion, nullptr,     L"ViewAmbientOcclusionOnCommand", L"ViewAmbientOcclusionOffCommand", true},
    {&ViewMSAACmdDef::info,             msaa,             offersMSAA,  L"ViewMSAAOnCommand",             L"ViewMSAAOffCommand",             true},
};

constexpr ViewMenuEntry kGrid[] = {
    {&ViewLayoutGridOnCmdDef::info,   layoutGrid,     nullptr, L"ViewLayoutGridOnCommand",   L"ViewLayoutGridOffCommand",   true},
    {&ViewGridRefNumbersCmdDef::info, gridRefNumbers, nullptr, L"ViewGridNumeralsOnCommand", L"ViewGridNumeralsOffCommand", false},
};
// clang-format on

bool isEnabled(const ViewMenuEntry& entry)
{
    return !entry.isEnabled || entry.isEnabled();
}

} // namespace

ViewMenuCmdDef::~ViewMenuCmdDef() = default;

bool ViewMenuCmdDef::onIsApplicable(CommandContext* context) const
{
    return context->asset() != nullptr;
}

CommandBase* ViewMenuCmdDef::onCreateCommand(CommandContext* context)
{
    return new ViewCmd(this, context);
}

InputControl* ViewMenuCmdDef::onInputControl()
{
    // Filled by its first update: what this machine's graphics offer costs a start too much to be asked.
    if (!m_menu)
        m_menu.reset(MenuControl::make(CommandDefinition::info(), this));
    return m_menu.get();
}

void ViewMenuCmdDef::onUpdateInputControl(CommandContext* context)
{
    CommandDefinition::onUpdateInputControl(context);
    updateMenuControl();
}

bool ViewMenuCmdDef::menuNeedsUpdating() const
{
    if (!m_menu || m_updatingMenu)
        return false;
    if (m_menu->items().size() != m_entries.size())
        return true;
    for (size_t i = 0; i < m_entries.size(); ++i) {
        const ViewMenuEntry& entry = m_entries[i];
        if ((entry.refilledByCheck && m_items[i]->checked() != entry.isChecked()) ||
            m_items[i]->enabled() != isEnabled(entry))
            return true;
    }
    return false;
}

void ViewMenuCmdDef::updateMenuControl()
{
    if (menuNeedsUpdating())
        reCreateMenuControl();
}

void ViewMenuCmdDef::reCreateMenuControl()
{
    std::vector<std::unique_ptr<MenuItem>> filled;
    std::vector<MenuItem*> items;
    for (const ViewMenuEntry& entry : m_entries) {
        MenuItem& item = *filled.emplace_back(std::make_unique<MenuItem>(entry.info()));
        item.checked(entry.isChecked());
        item.enabled(isEnabled(entry));
        items.push_back(&item);
    }
    m_menu->items(std::move(items));
    m_items = std::move(filled);
}

MenuItem* ViewMenuCmdDef::itemOf(const Info* info) const
{
    const auto found = std::ranges::find(m_items, info, [](const auto& item) { return item->info(); });
    return found == m_items.end() ? nullptr : found->get();
}

void ViewMenuCmdDef::onMenuSelectionChanged(MenuItem* item)
{
    CommandContext context = CommandContext::activeContext();
    if (!item || m_updatingMenu || !isAvailable(&context))
        return;
    const auto entry =
        std::ranges::find(m_entries, item->info(), [](const ViewMenuEntry& one) { return one.info(); });
    if (entry == m_entries.end())
        return;
    CommandDefinition* definition =
        CommandDefinitionMgr::get()->findCommandDefinitionById(item->info()->key());
    if (!definition)
        return;
    m_updatingMenu = true;
    context.executeImmediately(true);
    context.accessPoint(ECommandAccessPoint::Menu);
    context.addArgument(ViewCmdDefBase::cmdIdArgumentName(), item->checked() ? entry->on : entry->off);
    // Errors of a menu's commands are alerts.
    std::ignore = definition->executeCommand(context);
    onItemRun(item);
    m_updatingMenu = false;
}

ViewEffectCmdDef::ViewEffectCmdDef()
{
    entries(kEffects);
}

// Without a ground nothing falls on it. What was chosen for later stays checked.
void ViewEffectCmdDef::onItemRun(MenuItem* item)
{
    if (item->info() != ViewGroundPlaneCmdDef::info())
        return;
    for (const Info* onGround : {ViewGroundShadowCmdDef::info(), ViewGroundReflectionCmdDef::info()})
        menuControl()->enableItem(itemOf(onGround), item->checked());
}

ViewLayoutGridCmdDef::ViewLayoutGridCmdDef()
{
    entries(kGrid);
}

} // namespace Vu::Commands
