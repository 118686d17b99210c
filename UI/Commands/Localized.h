#pragma once

#include "Server/Base/FilledText.h"

#include <string>

namespace Vu::Commands {

/// The add-in's string-table and resource domain.
inline constexpr const wchar_t* kDomain = L"VuCommands";

/// The user's text for `key`, or `english` where there is none.
std::wstring localized(const char* key, const char* english);

/// The same with %1%, %2%... filled in.
template <class... Values>
std::wstring localizedFormat(const char* key, const char* english, const Values&... values)
{
    return Vs::filledText(localized(key, english), values...);
}

} // namespace Vu::Commands
