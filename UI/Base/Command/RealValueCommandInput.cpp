#include "UI/Base/Command/RealValueCommandInput.h"

#include "Server/Types/Units/Expression.h"
#include "Server/Types/UnitsOptionGroup.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/Private/Localized.h"

#include <cmath>
#include <utility>

namespace Vu {

namespace {

int measureFilterOf(Vs::Units::Quantity quantity)
{
    constexpr int kLengths = 2;
    constexpr int kAngles = 4;
    switch (quantity) {
    case Vs::Units::Quantity::Length:
        return kLengths;
    case Vs::Units::Quantity::Angle:
        return kAngles;
    default:
        return 0;
    }
}

} // namespace

RealValueCommandInput* RealValueCommandInput::make(CommandInputSet* set, int number, Info* info,
                                                   const Vs::Units::Unit& unit)
{
    auto* input = new RealValueCommandInput(set, number, info);
    input->m_unit = unit;
    input->m_settings = Vs::Units::UnitDisplaySettings::get();
    input->m_measureFilter = measureFilterOf(unit.quantity());
    using Vs::Units::Quantity;
    const bool ofLength = unit.quantity() == Quantity::Length || unit.quantity() == Quantity::Area ||
                          unit.quantity() == Quantity::Volume;
    if (ofLength && unit == Vs::Units::Unit::display(unit.quantity()))
        Vs::UnitsOptionGroup::get()->subscribe(input);
    return input;
}

RealValueCommandInput::~RealValueCommandInput()
{
    Vs::UnitsOptionGroup::get()->unsubscribe(this);
}

void RealValueCommandInput::optionChanged(Vs::OptionEvent*)
{
    const Vs::Units::Unit unit = Vs::Units::Unit::display(m_unit.quantity());
    if (std::exchange(m_unit, unit) != unit)
        stateChanged();
}

void RealValueCommandInput::unitDisplaySettings(const Vs::Units::UnitDisplaySettings& settings)
{
    if (std::exchange(m_settings, settings) != settings)
        stateChanged();
}

void RealValueCommandInput::hasMRU(bool value)
{
    if (std::exchange(m_hasMRU, value) != value)
        stateChanged();
}

std::vector<Info*> RealValueCommandInput::mruCommands()
{
    CommandInputQueryMRUCommandEvent event(this);
    commandInputSet()->fire(&event);
    return event.mruCommands();
}

void RealValueCommandInput::triggerMruCommand(const std::wstring& key)
{
    const CommandInUse inUse(commandInputSet()->command());
    CommandInputTriggerMRUCommandEvent event(this, key);
    commandInputSet()->fire(&event);
}

std::wstring RealValueCommandInput::valueAsString() const
{
    return Vs::Units::toExactText(value(), m_unit);
}

bool RealValueCommandInput::valueFromString(const std::wstring& text)
{
    std::wstring why;
    const std::optional<double> number = Vs::Units::evaluate(text, m_unit, why);
    if (number)
        value(*number);
    return number.has_value();
}

std::wstring RealValueCommandInput::displayText() const
{
    return Vs::Units::toText(value(), m_unit, m_settings);
}

std::wstring RealValueCommandInput::onWhyInvalid() const
{
    if (!std::isfinite(value()))
        return localized("InputNotFinite", "There is no number.");
    if (isMissing())
        return m_whyAwaits;
    const auto text = [this](double limit) { return Vs::Units::toText(limit, m_unit, m_settings); };
    if (m_minimum.on && (value() < m_minimum.value || (!m_minimum.inclusive && value() == m_minimum.value)))
        return m_minimum.inclusive
                   ? localizedFormat("InputBelow", "The value must be %1% or more.", text(m_minimum.value))
                   : localizedFormat("InputNotAbove", "The value must be more than %1%.",
                                     text(m_minimum.value));
    if (m_maximum.on && (value() > m_maximum.value || (!m_maximum.inclusive && value() == m_maximum.value)))
        return m_maximum.inclusive
                   ? localizedFormat("InputAbove", "The value must be %1% or less.", text(m_maximum.value))
                   : localizedFormat("InputNotBelow", "The value must be less than %1%.",
                                     text(m_maximum.value));
    return {};
}

std::wstring RealValueCommandInput::whyRefused(const std::wstring& text) const
{
    std::wstring why;
    Vs::Units::evaluate(text, m_unit, why);
    return why;
}

} // namespace Vu
