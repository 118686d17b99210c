#include "UI/Commands/Camera/OrbitCmdDef.h"

#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Commands/Camera/OrbitCmd.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {
namespace {

Vs::ImageSetResource* usedOrbitIcon()
{
    return UIBaseOptionGroup::get()->useContrainedOrbit() ? Resources::ConstrainedOrbit()
                                                          : Resources::FreeOrbit();
}

} // namespace

// clang-format off
constinit const CommandRow FreeOrbitCmdDef::kRow        = {.key = L"FreeOrbitCommand", .title = "Free Orbit", .icon = &Resources::FreeOrbit, .arguments = {L"Passive"}};
constinit const CommandRow ConstrainedOrbitCmdDef::kRow = {.key = L"ConstrainedOrbitCommand", .title = "Constrained Orbit", .icon = &Resources::ConstrainedOrbit, .arguments = {L"Passive"}};
constinit const CommandRow OrbitCmdDef::kRow            = {.key = L"OrbitCommand", .title = "Orbit", .icon = &usedOrbitIcon, .arguments = {L"orbitType", L"Passive"}};
// clang-format on

Info* FreeOrbitCmdDef::info()
{
    static Info record = makeInfo(kRow);
    return &record;
}

CommandBase* FreeOrbitCmdDef::onCreateCommand(CommandContext* context)
{
    return new OrbitCmd(this, context, m_constrained);
}

const Vs::UniqueString* OrbitCmdDef::orbitType()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("orbitType", true);
    return name;
}

CommandDefinition* OrbitCmdDef::usedOrbitCommandDefinition()
{
    const bool constrained = UIBaseOptionGroup::get()->useContrainedOrbit();
    return CommandDefinitionMgr::get()->findCommandDefinitionById(
        constrained ? ConstrainedOrbitCmdDef::info()->key() : FreeOrbitCmdDef::info()->key());
}

void OrbitCmdDef::activeInputControl(bool active)
{
    auto* definition = Vs::cast<OrbitCmdDef>(static_cast<const Vs::Object*>(
        CommandDefinitionMgr::get()->findCommandDefinitionById(info()->key())));
    if (definition)
        definition->inputControl()->active(active);
}

CommandBase* OrbitCmdDef::onCreateCommand(CommandContext* context)
{
    const std::wstring flavour = context->argumentAsString(orbitType());
    const bool constrained = flavour == ConstrainedOrbitCmdDef::info()->key();
    if (!constrained && flavour != FreeOrbitCmdDef::info()->key())
        return nullptr;
    UIBaseOptionGroup::get()->useContrainedOrbit(constrained);
    return new OrbitCmd(this, context, constrained);
}

InputControl* OrbitCmdDef::onInputControl()
{
    if (!m_control) {
        m_control.reset(ListControl::make(info(), this));
        Info* const constrained = ConstrainedOrbitCmdDef::info();
        Info* const free = FreeOrbitCmdDef::info();
        if (UIBaseOptionGroup::get()->useContrainedOrbit())
            m_control->items({constrained, free});
        else
            m_control->items({free, constrained});
        m_control->split(true);
        m_control->synchronizedWithCurrentItem(true);
    }
    return m_control.get();
}

// What marks the flavour that the mouse buttons use.
void OrbitCmdDef::onUpdateInputControl(CommandContext* context)
{
    Implements::onUpdateInputControl(context);
    if (m_control)
        m_control->selectedItem(usedOrbitCommandDefinition()->info(), false);
}

// The entry itself stands for its first flavour.
void OrbitCmdDef::onListSelectionChanged(Info* item)
{
    if (item == info() && m_control && !m_control->items().empty())
        item = m_control->items().front();
    if (!item)
        return;
    CommandContext context = CommandContext::activeContext();
    context.addArgument(orbitType(), item->key());
    executeLater(context);
}

} // namespace Vu::Commands
