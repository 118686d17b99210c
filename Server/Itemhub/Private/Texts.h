#pragma once

#include "Server/Base/FilledText.h"
#include "Server/Base/Require.h"
#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"

namespace Vs::Itemhub {

/// The user's text for `key`; `english` if there is none, or on threads other than the main one, which
/// has the user's language.
inline std::wstring localized(const char* key, const char* english)
{
    if (!Detail::onMainThread())
        return Strings::widen(english);
    return StringTable::getLocalizedString(L"VsItemhub", key, english);
}

/// The same with %1%, %2%... filled in. A translation that lacks a placeholder still yields a text.
template <class... Values>
std::wstring localizedFormat(const char* key, const char* english, const Values&... values)
{
    return filledText(localized(key, english), values...);
}

} // namespace Vs::Itemhub
