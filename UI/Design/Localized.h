#pragma once

#include "Server/Base/StringTable.h"

#include <boost/format.hpp>

namespace Vu::Design {

/// The add-in's string-table domain.
inline constexpr const wchar_t* kDomain = L"VuDesign";

/// The user's text for `key` in this add-in's domain, or `english` where there is none.
inline std::wstring localized(const char* key, const char* english)
{
    return Vs::StringTable::getLocalizedString(kDomain, key, english);
}

/// The same with %1%, %2%... filled in. A translation that lacks a placeholder still gives a text.
template <class... Values>
std::wstring localizedFormat(const char* key, const char* english, const Values&... values)
{
    boost::wformat format(localized(key, english));
    format.exceptions(boost::io::no_error_bits);
    (format % ... % values);
    return format.str();
}

} // namespace Vu::Design
