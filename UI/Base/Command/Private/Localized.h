#pragma once

#include "Server/Base/FilledText.h"
#include "Server/Base/StringTable.h"

#include <QString>

namespace Vu {

/// The user's text for `key` in the window's own domain, or `english` where there is none. Private to this
/// library.
inline std::wstring localized(const char* key, const char* english)
{
    return Vs::StringTable::getLocalizedString(L"VuBase", key, english);
}

/// The same with %1%, %2%... filled in.
template <class... Values>
std::wstring localizedFormat(const char* key, const char* english, const Values&... values)
{
    return Vs::filledText(localized(key, english), values...);
}

} // namespace Vu
