#include "UI/Commands/Selection/SnapCmds.h"

#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/SnapManager.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

using Inference::SnapManager;

// clang-format off
constinit const CommandRow SetSnapValueCmdDef::kRow = {
    .key = L"SetSnapValueCmd", .title = "Set Snap Value", .icon = &Resources::SnapEnable,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow EnableAdaptiveSnapCmdDef::kRow = {
    .key = L"EnableAdaptiveSnapCmd", .title = "Enable Adaptive Snap", .icon = &Resources::SnapEnable,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow DisableAdaptiveSnapCmdDef::kRow = {
    .key = L"DisableAdaptiveSnapCmd", .title = "Disable Adaptive Snap", .icon = &Resources::SnapDisable,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

Info* adaptiveInputInfo()
{
    static Info info(L"SnapAdaptiveInput", localized("SnapAdaptiveInput", "Adaptive"), nullptr);
    return &info;
}

Info* valueInputInfo()
{
    static Info info(L"SnapValueInput", localized("SnapValueInput", "Snap Value"), nullptr);
    return &info;
}

Info* fixedInputInfo()
{
    static Info info(L"SnapFixedInput", localized("SnapFixedInput", "Fixed"), nullptr);
    return &info;
}

} // namespace

bool SetSnapValueCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

CommandInputSet* SetSnapValueCmd::onCreateCommandInputs()
{
    const SnapManager* snap = SnapManager::get();
    CommandInputSet* inputs = CommandInputSet::make(this);
    m_adaptiveInput = BoolValueCommandInput::make(inputs, 1, adaptiveInputInfo());
    m_adaptiveInput->value(snap->adaptiveSnap());
    m_adaptiveInput->enable();
    m_valueInput =
        RealValueCommandInput::make(inputs, 0, valueInputInfo(), ActiveAssetUtils::makeLengthUnit());
    m_valueInput->value(snap->snapIncrement());
    m_valueInput->setUseManipulator(false);
    m_valueInput->minimumValue(true, 0.0, false);
    m_fixedInput = BoolValueCommandInput::make(inputs, 2, fixedInputInfo());
    m_fixedInput->value(!m_adaptiveInput->value());
    m_fixedInput->enable();
    m_valueInput->enabled(m_fixedInput->value());
    return inputs;
}

void SetSnapValueCmd::onCommandInputEventSink(CommandInputEvent* event)
{
    const auto* change = Vs::cast<CommandInputValueChangeEvent>(event);
    if (!change || change->kind() != CommandInputValueChangeEvent::EKind::Entered)
        return;
    if (change->commandInput() == m_fixedInput)
        m_adaptiveInput->value(!m_fixedInput->value());
    else if (change->commandInput() == m_adaptiveInput)
        m_fixedInput->value(!m_adaptiveInput->value());
    m_valueInput->enabled(m_fixedInput->value());
}

void SetSnapValueCmd::onValidateInputs(CommandInputStatus& status, bool)
{
    status.valid(m_valueInput->valid());
}

void SetSnapValueCmd::onEnd(ETerminationReason reason)
{
    if (reason != ETerminationReason::Commit)
        return;
    SnapManager* snap = SnapManager::get();
    snap->adaptiveSnap(m_adaptiveInput->value());
    if (m_fixedInput->value())
        snap->snapIncrement(ActiveAssetUtils::findSimpleLengthUnit()->toThisUnit(m_valueInput->value()));
}

bool EnableAdaptiveSnapCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context) && !SnapManager::get()->enableDistanceSnapping();
}

EnableAdaptiveSnapCmd::EnableAdaptiveSnapCmd(EnableAdaptiveSnapCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void EnableAdaptiveSnapCmd::onExecute(Vs::Status&)
{
    SnapManager::get()->enableDistanceSnapping(true);
}

bool DisableAdaptiveSnapCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context) && SnapManager::get()->enableDistanceSnapping();
}

DisableAdaptiveSnapCmd::DisableAdaptiveSnapCmd(DisableAdaptiveSnapCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void DisableAdaptiveSnapCmd::onExecute(Vs::Status&)
{
    SnapManager::get()->enableDistanceSnapping(false);
}

} // namespace Vu::Commands
