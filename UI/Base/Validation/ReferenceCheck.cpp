#include "UI/Base/Validation/ReferenceCheck.h"

#include "Server/Base/Exception.h"
#include "UI/Base/Command/Private/Localized.h"

#include <boost/format.hpp>

#include <algorithm>
#include <cmath>

namespace Vu {
namespace {

std::wstring textOf(const ReferenceValue& value, const std::wstring& unit)
{
    if (const auto* text = std::get_if<std::wstring>(&value))
        return *text;
    // As many digits as it takes to see a difference of the size of a tolerance.
    const std::wstring number = (boost::wformat(L"%.10g") % std::get<double>(value)).str();
    return unit.empty() ? number : number + L' ' + unit;
}

double toleranceOf(const CheckedValue& value, double reference)
{
    return std::max(value.absolute, value.relative * std::abs(reference));
}

/// Empty if the value is right.
std::wstring difference(const CheckedValue& value, const ReferenceValue& reference)
{
    if (value.found.index() == reference.index()) {
        const double* expected = std::get_if<double>(&reference);
        if (expected ? std::abs(std::get<double>(value.found) - *expected) <= toleranceOf(value, *expected)
                     : value.found == reference)
            return {};
        if (expected)
            return localizedFormat("CheckNumber", "%1% is %2% instead of %3%, with a tolerance of %4%",
                                   value.name, textOf(value.found, value.unit), textOf(reference, value.unit),
                                   textOf(toleranceOf(value, *expected), value.unit));
    }
    return localizedFormat("CheckText", "%1% is %2% instead of %3%", value.name,
                           textOf(value.found, value.unit), textOf(reference, value.unit));
}

std::vector<std::wstring> differences(const std::vector<CheckedValue>& values, ReferenceValues references)
{
    std::vector<std::wstring> found;
    for (const CheckedValue& value : values) {
        const auto reference = references.extract(value.name);
        std::wstring text = reference ? difference(value, reference.mapped())
                                      : localizedFormat("CheckNew", "%1% is %2%, and the reference has none",
                                                        value.name, textOf(value.found, value.unit));
        if (!text.empty())
            found.push_back(std::move(text));
    }
    for (const auto& [name, value] : references)
        found.push_back(
            localizedFormat("CheckGone", "%1% is not there any more, and was %2%", name, textOf(value, {})));
    return found;
}

std::wstring more(size_t count)
{
    return localizedFormat("CheckMore", " (and %1% more)", count);
}

Vs::TextCommandResult keep(References& references, const std::wstring& name,
                           const std::vector<CheckedValue>& values)
{
    constexpr size_t kTold = 6;
    ReferenceValues kept;
    std::wstring text;
    for (const CheckedValue& value : values) {
        kept[value.name] = value.found;
        if (kept.size() <= kTold)
            text += (text.empty() ? L"" : L", ") + value.name + L' ' + textOf(value.found, value.unit);
    }
    references.store(name, kept);
    if (kept.size() > kTold)
        text += more(kept.size() - kTold);
    return {0, localizedFormat("CheckKept", "Kept as the reference \"%1%\" in %2%: %3%", name,
                               references.file().wstring(), text)};
}

Vs::TextCommandResult compare(const References& references, const std::wstring& name,
                              const std::vector<CheckedValue>& values, const ReferenceValues& kept)
{
    const std::vector<std::wstring> wrong = differences(values, kept);
    if (wrong.empty())
        return {0, {}};
    std::wstring text = wrong.front();
    if (wrong.size() > 1)
        text += more(wrong.size() - 1);
    return {1, localizedFormat("CheckFailed", "%1%: %2%. The reference is in %3%.", name, text,
                               references.file().wstring())};
}

} // namespace

Vs::TextCommandResult checkAgainstReference(const std::wstring& name, const std::vector<CheckedValue>& values)
{
    try {
        References references(L"checks");
        if (const std::optional<ReferenceValues> kept = references.find(name))
            return compare(references, name, values, *kept);
        return keep(references, name, values);
    } catch (const Vs::Exception& error) {
        return {1, error.message()};
    }
}

} // namespace Vu
