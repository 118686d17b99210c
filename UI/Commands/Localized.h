#pragma once

#include <boost/format.hpp>

#include <string>

namespace Vu::Commands {

/// The add-in's string-table and resource domain.
inline constexpr const wchar_t* kDomain = L"VuCommands";

/// The user's text for `key`, or `english` where there is none.
std::wstring localized(const char* key, const char* english);

/// The same with %1%, %2%... filled in. A translation that lacks a placeholder still gives a text.
template <class... Values>
std::wstring localizedFormat(const char* key, const char* english, const Values&... values)
{
    boost::wformat format(localized(key, english));
    format.exceptions(boost::io::no_error_bits);
    (format % ... % values);
    return format.str();
}

} // namespace Vu::Commands
