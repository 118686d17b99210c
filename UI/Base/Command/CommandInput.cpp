#include "UI/Base/Command/CommandInput.h"

#include "Server/Base/NumberText.h"
#include "Server/Base/Require.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/GroupCommandInput.h"
#include "UI/Base/Command/Private/CommandSteps.h"
#include "UI/Base/Command/Private/Localized.h"

#include <utility>

namespace Vu {

namespace {

CommandInputSet* there(CommandInputSet* set)
{
    Vs::require(set != nullptr, "an input is made into a set");
    return set;
}

} // namespace

CommandInputBase::CommandInputBase(CommandInputSet* set, int number, Info* info)
    : m_set(there(set)), m_group(set->m_openGroup), m_number(number), m_info(info)
{
    set->m_inputs.emplace_back(this);
}

void CommandInputBase::enabled(bool value)
{
    if (std::exchange(m_enabled, value) != value)
        stateChanged();
}

void CommandInputBase::visible(bool value)
{
    if (std::exchange(m_visible, value) != value)
        stateChanged();
}

void CommandInputBase::hiddenWhileDisabled(bool value)
{
    if (std::exchange(m_hiddenWhileDisabled, value) != value)
        stateChanged();
}

void CommandInputBase::readOnly(bool value)
{
    if (std::exchange(m_readOnly, value) != value)
        stateChanged();
}

bool CommandInputBase::isUsable() const
{
    return m_enabled && (!m_group || m_group->isUsable());
}

bool CommandInputBase::isShown() const
{
    return m_visible && (m_enabled || !m_hiddenWhileDisabled) && (!m_group || m_group->isShown());
}

std::wstring CommandInputBase::whyInvalid() const
{
    if (!isUsable() || !isShown())
        return {};
    return m_refusal.empty() ? onWhyInvalid() : m_refusal;
}

std::wstring CommandInputBase::whyRefused(const std::wstring& text) const
{
    return localizedFormat("InputNoValue", "\"%1%\" is not a value of \"%2%\".", text, m_info->name());
}

std::wstring CommandInputBase::take(const std::wstring& text)
{
    return valueFromString(text) ? std::wstring() : whyRefused(text);
}

void CommandInputBase::typed(const std::wstring& text, EKind kind)
{
    const CommandInUse inUse(m_set->command());
    struct Restored
    {
        EKind& kind;
        ~Restored() { kind = EKind::Entered; }
    } const restored{m_kind};
    m_kind = kind;
    const std::wstring refusal = take(text);
    if (!refusal.empty() && std::exchange(m_refusal, refusal) != refusal)
        stateChanged();
}

void CommandInputBase::hover(bool entering)
{
    CommandInputHoverEvent event(this, entering);
    m_set->fire(&event);
}

void CommandInputBase::valueChanged()
{
    const CommandInUse inUse(m_set->command());
    m_refusal.clear();
    m_typing = m_kind == EKind::Typing;
    CommandInputValueChangeEvent event(this, m_kind);
    m_set->fire(&event);
    CommandBase* command = m_set->command();
    if (m_requiresExecution && command->isRunning() && !CommandSteps::areInputsRestored(command) &&
        m_set->valid())
        m_set->fireExecute(&event);
}

void CommandInputBase::valueConfirmed()
{
    if (m_typing && m_kind == EKind::Entered)
        valueChanged();
    else if (!std::exchange(m_refusal, {}).empty())
        stateChanged();
}

void CommandInputBase::stateChanged()
{
    CommandInputStateChangeEvent event(this);
    m_set->fire(&event);
}

BoolValueCommandInput* BoolValueCommandInput::make(CommandInputSet* set, int number, Info* info)
{
    return new BoolValueCommandInput(set, number, info);
}

std::wstring BoolValueCommandInput::valueAsString() const
{
    return value() ? L"1" : L"0";
}

bool BoolValueCommandInput::valueFromString(const std::wstring& text)
{
    const bool yes = text == L"1" || text == L"true";
    if (!yes && text != L"0" && text != L"false")
        return false;
    value(yes);
    return true;
}

IntegerValueCommandInput* IntegerValueCommandInput::make(CommandInputSet* set, int number, Info* info)
{
    return new IntegerValueCommandInput(set, number, info);
}

std::wstring IntegerValueCommandInput::valueAsString() const
{
    return std::to_wstring(value());
}

bool IntegerValueCommandInput::valueFromString(const std::wstring& text)
{
    const auto number = Vs::readNumber<int>(text);
    if (number)
        value(*number);
    return number.has_value();
}

StringValueCommandInput* StringValueCommandInput::make(CommandInputSet* set, int number, Info* info)
{
    return new StringValueCommandInput(set, number, info);
}

bool StringValueCommandInput::valueFromString(const std::wstring& text)
{
    value(text);
    return true;
}

std::wstring StringValueCommandInput::onWhyInvalid() const
{
    if (!m_required || !value().empty())
        return {};
    return localized("InputNeedsText", "A text is missing.");
}

} // namespace Vu
