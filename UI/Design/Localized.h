#pragma once

#include "Server/Base/FilledText.h"
#include "Server/Base/StringTable.h"

namespace Vu::Design {

/// The add-in's string-table domain.
inline constexpr const wchar_t* kDomain = L"VuDesign";

/// The user's text for `key` in this add-in's domain, or `english` where there is none.
inline std::wstring localized(const char* key, const char* english)
{
    return Vs::StringTable::getLocalizedString(kDomain, key, english);
}

/// The same with %1%, %2%... filled in.
template <class... Values>
std::wstring localizedFormat(const char* key, const char* english, const Values&... values)
{
    return Vs::filledText(localized(key, english), values...);
}

} // namespace Vu::Design
