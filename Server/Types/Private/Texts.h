#pragma once

#include "Server/Base/FilledText.h"
#include "Server/Base/StringTable.h"

namespace Vs::Types {

/// The user's text for `key`, or `english` where there is none. Private to this folder.
inline std::wstring localized(const char* key, const char* english)
{
    return StringTable::getLocalizedString(L"VsTypes", key, english);
}

/// The same with %1%, %2%... filled in.
template <class... Values>
std::wstring localizedFormat(const char* key, const char* english, const Values&... values)
{
    return Vs::filledText(localized(key, english), values...);
}

} // namespace Vs::Types
