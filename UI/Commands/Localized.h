#pragma once

#include "Server/Base/LocalizedText.h"

namespace Vu::Commands {

/// The add-in's string-table and resource domain, and its texts.
inline constexpr const wchar_t* kDomain = L"VuCommands";
inline constexpr Vs::LocalizedText localized{kDomain};
inline constexpr Vs::LocalizedFormat localizedFormat{kDomain};

} // namespace Vu::Commands
