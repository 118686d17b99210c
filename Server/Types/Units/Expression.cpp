#include "Server/Types/Units/Expression.h"

#include "Server/Types/Private/Texts.h"
#include "Server/Types/Units/Private/Grammar.h"

#include <algorithm>

namespace Vs::Units {

namespace {

/// Longer texts come from the clipboard by mistake; and parentheses can't be so deep that they fill the
/// stack.
constexpr size_t kLongest = 200;

/// Signs that look the same as others, as they come from documents and foreign keyboards. Each stays one
/// character, so that places stay what they are.
std::wstring usualSigns(std::wstring text)
{
    for (wchar_t& c : text)
        switch (c) {
        case L'\u00a0':
        case L'\u2009':
        case L'\u202f':
            c = L' ';
            break;
        case L'\u2212':
        case L'\u2013':
            c = L'-';
            break;
        case L'\u00d7':
        case L'\u00b7':
        case L'\u22c5':
            c = L'*';
            break;
        case L'\u00f7':
            c = L'/';
            break;
        case L'\u2032':
            c = L'\'';
            break;
        case L'\u2033':
            c = L'"';
            break;
        default:
            break;
        }
    return text;
}

bool isBlank(const std::wstring& text)
{
    return text.find_first_not_of(L" \t") == std::wstring::npos;
}

Magnitude inField(const Magnitude& result, const Unit& field)
{
    const Powers wanted = Powers::of(field.quantity());
    if (result.powers.plain() && !wanted.plain())
        return result.withUnit({field.size(), wanted}).settled();
    if (result.powers != wanted)
        throw ExpressionError{Types::localizedFormat("ExpressionOtherQuantity",
                                                     "This is %1%, but %2% is needed", nameOf(result.powers),
                                                     nameOf(wanted)),
                              result.position};
    return result;
}

} // namespace

std::optional<double> evaluate(const std::wstring& text, const Unit& unit, std::wstring& why)
{
    const std::wstring usual = usualSigns(text);
    if (isBlank(usual)) {
        why = Types::localized("ExpressionEmpty", "A value is missing.");
        return {};
    }
    if (usual.size() > kLongest) {
        why =
            Types::localizedFormat("ExpressionTooLong", "The text is longer than %1% characters.", kLongest);
        return {};
    }
    try {
        return inField(parse(usual, unit), unit).number;
    } catch (const ExpressionError& error) {
        why = Types::localizedFormat("ExpressionError", "%1%: character %2% of \"%3%\".", error.message,
                                     error.position + 1, text);
        return {};
    }
}

} // namespace Vs::Units
