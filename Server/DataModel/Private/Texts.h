#pragma once

#include "Server/Base/StringTable.h"

#include <boost/format.hpp>

namespace Vs::DataModel {

/// The user's text for `key`, or `english` where there is none. Private to this folder.
inline std::wstring localized(const char* key, const char* english)
{
    return StringTable::getLocalizedString(L"VsDataModel", key, english);
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

} // namespace Vs::DataModel
