// The grammar of expressions. Alone in its file, as it takes long to compile.

#include "Server/Types/Units/Private/Grammar.h"

#include "Server/Base/Strings.h"
#include "Server/Types/Private/Texts.h"

#define BOOST_SPIRIT_X3_UNICODE
#include <boost/fusion/include/at_c.hpp>
#include <boost/spirit/home/x3.hpp>

#include <algorithm>
#include <charconv>
#include <limits>
#include <numbers>

namespace Vs::Units {

namespace {

namespace x3 = boost::spirit::x3;
using boost::fusion::at_c;
using x3::standard_wide::char_;
using x3::standard_wide::lit;
using Iterator = std::wstring::const_iterator;

/// A name and where it stands.
struct Name
{
    std::wstring text;
    size_t position = 0;
};

/// What the actions have to know beside what they read.
struct Reading
{
    const std::wstring& text;
    const Unit& field;
};

template <class Context>
const Reading& reading(const Context& context)
{
    return x3::get<Reading>(context);
}

double numberOf(const std::wstring& digits)
{
    const std::string text = Strings::narrow(digits);
    double number = 0;
    // What is too small for a double is as good as nothing; what is too large will be refused.
    if (std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc::result_out_of_range)
        return text.find('-') == std::string::npos ? std::numeric_limits<double>::infinity() : 0.0;
    return number;
}

const auto digit = char_(L"0-9");
const auto letter = char_(L"a-zA-Z");
/// Notes where the rule that begins with it begins.
const auto here = x3::eps[([](auto& context) {
    _val(context).position = static_cast<size_t>(x3::_where(context).begin() - reading(context).text.begin());
})];

const x3::rule<class Digits, std::wstring> digits = "digits";
const x3::rule<class Decimal, std::wstring> decimal = "decimal";
const x3::rule<class Word, std::wstring> word = "word";
const x3::rule<class Symbol, Name> symbol = "symbol";
const x3::rule<class Raised, int> raised = "raised";
const x3::rule<class Sum, Magnitude> sum = "sum";
const x3::rule<class Product, Magnitude> product = "product";
const x3::rule<class Signed, Magnitude> signed_ = "signed";
const x3::rule<class Power, Magnitude> power = "power";
const x3::rule<class Primary, Magnitude> primary = "primary";

const auto digits_def = +digit;
const auto decimal_def = x3::raw[x3::lexeme[((+digit >> -(lit(L'.') >> *digit)) | (lit(L'.') >> +digit)) >>
                                            -(char_(L"eE") >> -char_(L"+-") >> +digit)]];
const auto word_def = x3::raw[x3::lexeme[letter >> *(letter | digit)]];
const auto symbol_def =
    here >> x3::raw[x3::lexeme[+(letter | char_(L"\u00b0\u00b5\u03bc\"'"))]][([](auto& context) {
        _val(context).text = {_attr(context).begin(), _attr(context).end()};
    })];
const auto raised_def =
    (lit(L'\u00b2') >> x3::attr(2)) | (lit(L'\u00b3') >> x3::attr(3)) | (lit(L'^') > x3::int_);
/// "3 1/2": what follows the fraction may tell that it is none ("3 1/2.5").
const auto mixed =
    x3::lexeme[digits >> x3::omit[+lit(L' ')] >> digits >> L'/' >> digits >> !(digit | lit(L'.'))];

const auto set = [](auto& context) { _val(context) = _attr(context); };
/// What was noted as the place stays it.
const auto setHere = [](auto& context, Magnitude value) {
    value.position = _val(context).position;
    _val(context) = value;
};
const auto setNumber = [](auto& context) {
    const Magnitude number{numberOf(_attr(context)), {}, {}, _val(context).position};
    _val(context) = number.power(1);
};
const auto setMixed = [](auto& context) {
    auto& parts = _attr(context);
    const size_t place = _val(context).position;
    const Magnitude above{numberOf(at_c<1>(parts)), {}, {}, place};
    const Magnitude fraction = above.quotient({numberOf(at_c<2>(parts)), {}, {}, place});
    _val(context) = fraction.sum({numberOf(at_c<0>(parts)), {}, {}, place}, 1, {});
};
const auto setPi = [](auto& context) { setHere(context, {std::numbers::pi, {}, {}, 0}); };
const auto setCall = [](auto& context) {
    auto& parts = _attr(context);
    _val(context) = call(at_c<0>(parts), at_c<1>(parts), _val(context).position);
};
const auto setInner = [](auto& context) { setHere(context, _attr(context).settled()); };
const auto raise = [](auto& context) { _val(context) = _val(context).power(_attr(context)); };
const auto addUnit = [](auto& context) {
    auto& parts = _attr(context);
    const Name& name = at_c<0>(parts);
    const UnitPower unit = unitOf(name.text, at_c<1>(parts).value_or(1), name.position);
    _val(context) = _val(context).withUnit(unit);
};
const auto negate = [](auto& context) { _val(context) = _attr(context).negated(); };
const auto multiply = [](auto& context) { _val(context) = _val(context).product(_attr(context)); };
const auto divide = [](auto& context) { _val(context) = _val(context).quotient(_attr(context)); };
const auto add = [](auto& context) {
    _val(context) = _val(context).sum(_attr(context), 1, reading(context).field);
};
const auto subtract = [](auto& context) {
    _val(context) = _val(context).sum(_attr(context), -1, reading(context).field);
};

const auto sum_def = product[set] >> *((lit(L'+') > product[add]) | (lit(L'-') > product[subtract]));
const auto product_def = signed_[set] >> *((lit(L'*') > signed_[multiply]) | (lit(L'/') > signed_[divide]));
const auto signed__def = (lit(L'-') > signed_[negate]) | (lit(L'+') > signed_[set]) | power[set];
const auto power_def = primary[set] >> -(lit(L'^') > x3::int_[raise]) >> -((symbol >> -raised)[addUnit]);
const auto primary_def = here >> (mixed[setMixed] | decimal[setNumber] | (lit(L'(') > sum[setInner] > L')') |
                                  ((word >> L'(') > sum > L')')[setCall] |
                                  (x3::lexeme[lit(L"pi") >> !letter] | lit(L'\u03c0'))[setPi]);

BOOST_SPIRIT_DEFINE(digits, decimal, word, symbol, raised, sum, product, signed_, power, primary)

[[noreturn]] void refuse(const std::wstring& text, Iterator from)
{
    const auto position = static_cast<size_t>(from - text.begin());
    if (from == text.end())
        throw ExpressionError{Types::localized("ExpressionEndsEarly", "Something is missing"), position};
    if (*from == L',')
        throw ExpressionError{
            Types::localized("ExpressionComma", "Decimals are written with a point, not a comma"), position};
    throw ExpressionError{Types::localizedFormat("ExpressionUnexpected", "\"%1%\" makes no sense",
                                                 std::wstring(from, text.end())),
                          position};
}

} // namespace

Magnitude parse(const std::wstring& text, const Unit& field)
{
    const Reading reading{text, field};
    const auto blank = char_(L" \t");
    Iterator next = text.begin();
    Magnitude result;
    try {
        const bool read = x3::phrase_parse(next, text.end(), x3::with<Reading>(reading)[sum], blank, result);
        if (!read || next != text.end())
            refuse(text, next);
    } catch (const x3::expectation_failure<Iterator>& failure) {
        refuse(text, std::find_if_not(failure.where(), text.end(),
                                      [](wchar_t c) { return c == L' ' || c == L'\t'; }));
    }
    return result.settled();
}

} // namespace Vs::Units
