#include "UI/Base/Validation/ReferenceCheck.h"

#include "Server/Base/Exception.h"
#include "UI/Base/Command/Private/Localized.h"

#include <boost/format.hpp>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <map>
#include <string_view>

namespace Vu {
namespace {

bool s_tellsValues = false;

std::wstring textOf(const ReferenceValue& value, const std::wstring& unit)
{
    if (const auto* text = std::get_if<std::wstring>(&value))
        return *text;
    // Enough digits to show a difference as large as a tolerance.
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

bool isReason(const std::wstring& name)
{
    return std::any_of(std::begin(kReasons), std::end(kReasons),
                       [&](const wchar_t* beginning) { return name.starts_with(beginning); });
}

/// The values by their words.
std::map<std::wstring, std::wstring> partsOf(const ReferenceValue& value)
{
    std::map<std::wstring, std::wstring> parts;
    std::wstring text = textOf(value, {});
    while (!text.empty()) {
        constexpr std::wstring_view kBetween = L"; ";
        const size_t end = std::min(text.find(kBetween), text.size());
        const std::wstring part = text.substr(0, end);
        text.erase(0, end + kBetween.size());
        const size_t blank = std::min(part.find(L' '), part.size());
        parts[part.substr(0, blank)] = part.substr(std::min(blank + 1, part.size()));
    }
    return parts;
}

std::wstring reason(const std::wstring& name, const ReferenceValue& found, const ReferenceValue& reference)
{
    const std::map<std::wstring, std::wstring> now = partsOf(found), then = partsOf(reference);
    std::wstring text;
    for (const auto& [word, value] : now) {
        const auto before = then.find(word);
        if (before != then.end() && before->second != value)
            text += (text.empty() ? L"" : L"; ") +
                    localizedFormat("CheckPart", "%1% %2% instead of %3%", word, value, before->second);
    }
    return name + L": " + text;
}

/// What is reported of a failed check besides the values that differ.
std::vector<std::wstring> reasons(const std::vector<CheckedValue>& values, ReferenceValues references)
{
    std::erase_if(references, [](const auto& each) { return !isReason(each.first); });
    std::vector<std::wstring> found;
    // References of an older version have none.
    if (references.empty())
        return found;
    for (const CheckedValue& value : values) {
        if (!isReason(value.name))
            continue;
        const auto reference = references.extract(value.name);
        if (!reference)
            found.push_back(localizedFormat("CheckNewPart", "%1% is new", value.name));
        else if (reference.mapped() != value.found)
            found.push_back(reason(value.name, value.found, reference.mapped()));
    }
    for (const auto& each : references)
        found.push_back(localizedFormat("CheckGonePart", "%1% is not there any more", each.first));
    return found;
}

std::vector<std::wstring> differences(const std::vector<CheckedValue>& values, ReferenceValues references)
{
    std::erase_if(references, [](const auto& each) { return isReason(each.first); });
    std::vector<std::wstring> found;
    for (const CheckedValue& value : values) {
        if (isReason(value.name))
            continue;
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
    size_t count = 0;
    for (const CheckedValue& value : values) {
        kept[value.name] = value.found;
        if (!isReason(value.name) && ++count <= kTold)
            text += (text.empty() ? L"" : L", ") + value.name + L' ' + textOf(value.found, value.unit);
    }
    references.store(name, kept);
    if (count > kTold)
        text += more(count - kTold);
    return {0, localizedFormat("CheckKept", "Kept as the reference \"%1%\" in %2%: %3%", name,
                               references.file().wstring(), text)};
}

/// The result, and beside it the expected value if it differs in the digits shown.
std::wstring right(const std::vector<CheckedValue>& values, const ReferenceValues& kept)
{
    std::wstring text;
    for (const CheckedValue& value : values) {
        const auto reference = kept.find(value.name);
        if (isReason(value.name) || reference == kept.end())
            continue;
        const std::wstring found = textOf(value.found, value.unit),
                           wanted = textOf(reference->second, value.unit);
        text += (text.empty() ? L"" : L", ") + value.name + L' ' + found;
        if (found != wanted)
            text += L" (" + wanted + L')';
    }
    return text;
}

/// `first` has the difference that is reported first.
Vs::TextCommandResult compare(const std::vector<CheckedValue>& values, const ReferenceValues& kept,
                              const std::function<std::wstring(const std::wstring& difference)>& first)
{
    constexpr size_t kTold = 10;
    std::vector<std::wstring> wrong = differences(values, kept);
    if (wrong.empty())
        return {0, s_tellsValues ? right(values, kept) : std::wstring()};
    std::wstring text = first(wrong.front());
    wrong.erase(wrong.begin());
    for (std::wstring& each : reasons(values, kept))
        wrong.push_back(std::move(each));
    for (size_t i = 0; i < std::min(wrong.size(), kTold); ++i)
        text += L"\n    " + wrong[i];
    if (wrong.size() > kTold)
        text += L"\n   " + more(wrong.size() - kTold);
    return {1, text};
}

} // namespace

Vs::TextCommandResult checkAgainstReference(const std::wstring& name, const std::vector<CheckedValue>& values)
{
    try {
        References references(L"checks");
        if (const std::optional<ReferenceValues> kept = references.find(name))
            return compare(values, *kept, [&](const std::wstring& difference) {
                return localizedFormat("CheckFailed", "%1%: %2%. The reference is in %3%.", name, difference,
                                       references.file().wstring());
            });
        return keep(references, name, values);
    } catch (const Vs::Exception& error) {
        return {1, error.message()};
    }
}

void tellCheckedValues(bool tell)
{
    s_tellsValues = tell;
}

Vs::TextCommandResult checkAgainstValues(const std::wstring& name, const std::vector<CheckedValue>& values,
                                         const ReferenceValues& reference)
{
    return compare(values, reference,
                   [&](const std::wstring& difference) { return name + L": " + difference + L'.'; });
}

} // namespace Vu
