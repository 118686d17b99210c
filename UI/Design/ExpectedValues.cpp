#include "UI/Design/ExpectedValues.h"

#include "Server/Base/Exception.h"
#include "Server/Types/Units/Expression.h"
#include "UI/Design/Localized.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <optional>

namespace Vu::Design {
namespace {

using Vs::Units::Quantity;

Quantity quantityOf(const CheckedValue& value)
{
    return value.unit == L"mm³"   ? Quantity::Volume
           : value.unit == L"mm²" ? Quantity::Area
           : value.unit == L"mm"  ? Quantity::Length
                                  : Quantity::Plain;
}

double numberOf(const std::wstring& text, const CheckedValue& value)
{
    std::wstring why;
    const std::optional<double> number =
        Vs::Units::evaluate(text, Vs::Units::Unit::base(quantityOf(value)), why);
    if (!number)
        throw Vs::Exception(why);
    return *number;
}

/// What follows "+-".
void setTolerance(std::wstring text, CheckedValue& value)
{
    if (!text.ends_with(L'%')) {
        value.relative = 0;
        value.absolute = numberOf(text, value);
        return;
    }
    text.pop_back();
    CheckedValue plain = value;
    plain.unit.clear();
    value.relative = numberOf(text, plain) / 100;
    value.absolute = 0;
}

} // namespace

Vs::TextCommandResult checkExpected(const std::wstring& name, std::vector<CheckedValue> values,
                                    const std::wstring& text)
{
    constexpr std::wstring_view kTolerance = L"+-";
    const size_t sign = text.find(kTolerance);
    const std::wstring wanted = text.substr(0, sign);
    std::vector<std::wstring> expected;
    boost::algorithm::split(expected, wanted, boost::algorithm::is_any_of(L","));
    if (expected.size() != values.size())
        throw Vs::Exception(localizedFormat("CheckOtherCount",
                                            "the check finds %1% values, and the line has %2%", values.size(),
                                            expected.size()));
    ReferenceValues reference;
    for (size_t i = 0; i < values.size(); ++i) {
        const std::wstring own = boost::algorithm::trim_copy(expected[i]);
        if (std::holds_alternative<std::wstring>(values[i].found)) {
            reference[values[i].name] = own;
            continue;
        }
        reference[values[i].name] = numberOf(own, values[i]);
        if (sign != std::wstring::npos)
            setTolerance(boost::algorithm::trim_copy(text.substr(sign + kTolerance.size())), values[i]);
    }
    return checkAgainstValues(name, values, reference);
}

} // namespace Vu::Design
