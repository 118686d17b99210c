#include "UI/Base/Command/CommandInput.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Command/CommandInputSet.h"

#include <charconv>
#include <cmath>

namespace Vu {

namespace {

template <class Number>
bool readNumber(const std::wstring& text, Number& number)
{
    const std::string narrow = Vs::Strings::narrow(text);
    const char* last = narrow.data() + narrow.size();
    const auto [end, error] = std::from_chars(narrow.data(), last, number);
    return error == std::errc() && end == last;
}

template <class Number>
std::wstring writeNumber(Number number)
{
    char buffer[64];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

} // namespace

CommandInputBase::CommandInputBase(CommandInputSet* set, int number, Info* info)
    : m_set(set), m_number(number), m_info(info)
{
    set->m_inputs.emplace_back(this);
}

void CommandInputBase::enabled(bool value)
{
    if (m_enabled == value)
        return;
    m_enabled = value;
    stateChanged();
}

void CommandInputBase::visible(bool value)
{
    if (m_visible == value)
        return;
    m_visible = value;
    stateChanged();
}

void CommandInputBase::executeIfValid()
{
    if (m_requiresExecution && m_set->valid())
        m_set->fireExecute(this);
}

void CommandInputBase::valueChanged()
{
    m_set->fire(this, CommandInputEvent::EKind::Value);
}

void CommandInputBase::stateChanged()
{
    m_set->fire(this, CommandInputEvent::EKind::State);
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
    return writeNumber(value());
}

bool IntegerValueCommandInput::valueFromString(const std::wstring& text)
{
    int number = 0;
    if (!readNumber(text, number))
        return false;
    value(number);
    return true;
}

RealValueCommandInput* RealValueCommandInput::make(CommandInputSet* set, int number, Info* info,
                                                   std::wstring unit)
{
    auto* input = new RealValueCommandInput(set, number, info);
    input->m_unit = std::move(unit);
    return input;
}

void RealValueCommandInput::range(double minimum, double maximum)
{
    m_minimum = minimum;
    m_maximum = maximum;
    m_ranged = true;
}

bool RealValueCommandInput::onIsValid() const
{
    return std::isfinite(value()) && (!m_ranged || (value() >= m_minimum && value() <= m_maximum));
}

std::wstring RealValueCommandInput::valueAsString() const
{
    return writeNumber(value());
}

bool RealValueCommandInput::valueFromString(const std::wstring& text)
{
    double number = 0.0;
    if (!readNumber(text, number))
        return false;
    value(number);
    return true;
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

} // namespace Vu
