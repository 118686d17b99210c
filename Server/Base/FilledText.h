#pragma once

#include <boost/format.hpp>

#include <string>

namespace Vs {

/// A text of the string table with %1%, %2%... filled in. A translation that lacks a placeholder still gives
/// a text.
template <class... Values>
std::wstring filledText(const std::wstring& text, const Values&... values)
{
    boost::wformat format(text);
    format.exceptions(boost::io::no_error_bits);
    (format % ... % values);
    return format.str();
}

} // namespace Vs
